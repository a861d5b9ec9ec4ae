# Warnings, hardening and sanitizers, for every target of this project.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

# Tests, simulator and consoles are to be built quickly. To optimise them fully or to look for undefined behaviour in
# them, too, would nearly double the time; and what gcc 12 warns of in joined strings then is not so.
if(KX_SANITIZE)
    set(KX_QUICK_BUILD_OPTIONS -O0 -fno-sanitize=undefined)
else()
    set(KX_QUICK_BUILD_OPTIONS -O1)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND KX_QUICK_BUILD_OPTIONS -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow)
endif()

# To read headers takes most of the time of a build that is not optimised. gcc 12 warns of what is not so when they are
# precompiled.
function(kx_precompile target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
set(KX_COMMON_HEADERS <algorithm> <chrono> <functional> <memory> <mutex> <optional> <string> <thread> <vector>)

if(KX_SANITIZE)
    add_compile_options(-fsanitize=${KX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KX_SANITIZE})
elseif(CMAKE_BUILD_TYPE MATCHES "Rel")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong
                        -fstack-clash-protection)
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    include(CheckPIESupported)
    check_pie_supported()
endif()
