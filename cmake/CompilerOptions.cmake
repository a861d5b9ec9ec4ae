# Warnings, hardening and sanitizers, for every target of this project.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

if(KX_SANITIZE)
    add_compile_options(-fsanitize=${KX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KX_SANITIZE})
    # For what is not shipped: to look for undefined behaviour in it, too, would double the time that it takes to build.
    # What gcc 12 warns of in joined strings then is not so.
    set(KX_UNSHIPPED_OPTIONS -fno-sanitize=undefined -Wno-array-bounds -Wno-restrict
        -Wno-stringop-overflow)
elseif(CMAKE_BUILD_TYPE MATCHES "Rel")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong
                        -fstack-clash-protection)
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    include(CheckPIESupported)
    check_pie_supported()
endif()
