# Warnings and sanitizers, applied to each of our own targets.

set(APPCOMPONENTS_SANITIZE "" CACHE STRING
    "Sanitizers to build with: a list for -fsanitize=, such as address,undefined or thread")

function(appcomponents_compiler_options target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                             -Woverloaded-virtual -Wcast-align -Wundef)
    if(APPCOMPONENTS_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(APPCOMPONENTS_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${APPCOMPONENTS_SANITIZE}
                                                 -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(${target} PRIVATE -fsanitize=${APPCOMPONENTS_SANITIZE})
    endif()
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)
endfunction()
