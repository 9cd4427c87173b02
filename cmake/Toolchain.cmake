# Compiler settings shared by every target.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

set(CMAKE_CXX_FLAGS_RELEASE "-O3")
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Werror -fno-math-errno)
# Keeps the arithmetic of one source line the same on every machine: no silent fused multiply-add.
add_compile_options(-ffp-contract=off)

# Media files come from anywhere: what a damaged one might overwrite is guarded.
add_compile_options(-fstack-protector-strong)
add_link_options(-Wl,-z,relro,-z,now $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
if(NOT LUMIRRA_SANITIZE)
  add_compile_definitions(_FORTIFY_SOURCE=2)  # the sanitizers look closer
endif()

if(LUMIRRA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -O1 -g)
  add_link_options(-fsanitize=address,undefined)
  # The vector levels in between are compiled from the same source; the release tests run on them.
  add_compile_definitions("HWY_DISABLED_TARGETS=(HWY_SSSE3|HWY_SSE4|HWY_AVX3_DL)")
endif()

add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                        QT_DISABLE_DEPRECATED_BEFORE=0x060400)
