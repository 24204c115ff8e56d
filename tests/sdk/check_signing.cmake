# Packs the SDK twice: as it is, where no binary is signed, and with a throwaway self-signed
# certificate made here, where every binary in the zips carries an intact signature by it
# (checked against that certificate, since no one else trusts it).
include(${CMAKE_CURRENT_LIST_DIR}/sdk_script.cmake)
sdk_require(BUILD_DIR CPACK VERSION OSSLSIGNCODE)
sdk_scratch(signing-check)

set(zips_with_binaries runtime tools simulator)
sdk_pack(unsigned COMPONENTS ${zips_with_binaries}
    ENVIRONMENT --unset=OSTREL_SIGN_CERT --unset=OSTREL_SIGN_KEY)
sdk_run(openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj "/CN=ostrel throwaway test signer"
    -keyout ${scratch}/key.pem -out ${scratch}/cert.pem)
sdk_pack(signed COMPONENTS ${zips_with_binaries}
    ENVIRONMENT OSTREL_SIGN_CERT=${scratch}/cert.pem OSTREL_SIGN_KEY=${scratch}/key.pem)

sdk_binaries(${scratch}/signed)
set(failures "")
foreach(binary ${binaries})
    execute_process(COMMAND ${OSSLSIGNCODE} verify -CAfile ${scratch}/cert.pem
                            -in ${scratch}/signed/bin/${binary}
        RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0 OR NOT out MATCHES "Signature verification: ok"
       OR NOT out MATCHES "ostrel throwaway test signer")
        list(APPEND failures "${binary}: signature not intact:\n${out}")
    endif()
    execute_process(COMMAND ${OSSLSIGNCODE} verify -in ${scratch}/unsigned/bin/${binary}
        RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(result EQUAL 0 OR NOT out MATCHES "No signature found")
        list(APPEND failures "${binary}: signed without a certificate given:\n${out}")
    endif()
endforeach()
sdk_report("${failures}")
message(STATUS "Signed and verified: ${binaries}")
