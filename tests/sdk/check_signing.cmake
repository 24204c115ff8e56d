# Packs the SDK twice: as it is, where no binary is signed, and with a throwaway self-signed
# certificate made here, where every binary in the zips carries an intact signature by it
# (checked against that certificate, since no one else trusts it).
foreach(var BUILD_DIR CPACK VERSION OSSLSIGNCODE)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "${var} not set")
    endif()
endforeach()

set(scratch ${BUILD_DIR}/signing-check)
file(REMOVE_RECURSE ${scratch})
file(MAKE_DIRECTORY ${scratch})

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}")
    endif()
endfunction()

# The binaries of the zips with binaries, unpacked into folder.
function(pack folder)
    run(${CMAKE_COMMAND} -E env ${ARGN} ${CPACK} -G ZIP --config ${BUILD_DIR}/CPackConfig.cmake
        -B ${scratch}/${folder}-package)
    foreach(component runtime tools simulator)
        file(ARCHIVE_EXTRACT
            INPUT ${scratch}/${folder}-package/ostrel-${VERSION}-win64-${component}.zip
            DESTINATION ${scratch}/${folder})
    endforeach()
endfunction()

pack(unsigned --unset=OSTREL_SIGN_CERT --unset=OSTREL_SIGN_KEY)
run(openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj "/CN=ostrel throwaway test signer"
    -keyout ${scratch}/key.pem -out ${scratch}/cert.pem)
pack(signed OSTREL_SIGN_CERT=${scratch}/cert.pem OSTREL_SIGN_KEY=${scratch}/key.pem)

file(GLOB binaries RELATIVE ${scratch}/signed/bin ${scratch}/signed/bin/*.dll
    ${scratch}/signed/bin/*.exe)
list(LENGTH binaries count)
if(count LESS 7)
    message(FATAL_ERROR "only ${binaries} in the zips")
endif()
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
if(failures)
    string(JOIN "\n" failures ${failures})
    message(FATAL_ERROR "${failures}")
endif()
message(STATUS "${count} binaries signed and verified: ${binaries}")
