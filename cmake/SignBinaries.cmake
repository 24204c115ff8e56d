# Run by cpack once it has staged the components and before it zips them: signs every staged
# program and DLL with osslsigncode (Authenticode, SHA-256) when OSTREL_SIGN_CERT and
# OSTREL_SIGN_KEY name a certificate and its private key, with a timestamp from
# OSTREL_SIGN_TIMESTAMP_URL when that is set too. Without them the zips hold unsigned binaries.
if(NOT DEFINED ENV{OSTREL_SIGN_CERT} OR NOT DEFINED ENV{OSTREL_SIGN_KEY})
    return()
endif()
find_program(OSTREL_OSSLSIGNCODE osslsigncode)
if(NOT OSTREL_OSSLSIGNCODE)
    message(FATAL_ERROR "osslsigncode not found: install the Debian package osslsigncode")
endif()
set(_sign sign -certs $ENV{OSTREL_SIGN_CERT} -key $ENV{OSTREL_SIGN_KEY} -h sha256
    -n "${CPACK_PACKAGE_NAME} ${CPACK_PACKAGE_VERSION}")
if(DEFINED ENV{OSTREL_SIGN_TIMESTAMP_URL})
    list(APPEND _sign -ts $ENV{OSTREL_SIGN_TIMESTAMP_URL})
endif()
file(GLOB_RECURSE _binaries ${CPACK_TEMPORARY_DIRECTORY}/*.dll ${CPACK_TEMPORARY_DIRECTORY}/*.exe)
foreach(_binary ${_binaries})
    execute_process(COMMAND ${OSTREL_OSSLSIGNCODE} ${_sign} -in ${_binary} -out ${_binary}.signed
        RESULT_VARIABLE _result OUTPUT_VARIABLE _output ERROR_VARIABLE _output)
    if(NOT _result EQUAL 0)
        message(FATAL_ERROR "signing ${_binary} failed:\n${_output}")
    endif()
    file(RENAME ${_binary}.signed ${_binary})
endforeach()
