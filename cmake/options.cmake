# Compiler flags: what the numbers rest on, and what everything of ours is compiled with.

# Results are the same bits everywhere: no contraction, and nothing of fast-math but the two flags that change
# no bit and let loops with floor() and conversions run in vectors.
add_library(korvos_numbers INTERFACE)
target_compile_options(korvos_numbers INTERFACE -ffp-contract=off -fno-math-errno -fno-trapping-math)

# psabi: vectors are passed between functions that are always inlined. pass-failed: clang warns where it does not
# take the advice of KORVO_INDEPENDENT, as it cannot in every build.
add_library(korvos_warnings INTERFACE)
target_compile_options(
  korvos_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wmissing-declarations -Wno-psabi
                            $<$<CXX_COMPILER_ID:Clang>:-Wno-pass-failed> $<$<BOOL:${KORVOS_WERROR}>:-Werror>)

if(KORVOS_SANITIZE)
  add_compile_options(-fsanitize=${KORVOS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KORVOS_SANITIZE})
endif()
if(KORVOS_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# The optimisation of release builds is -O3 rather than the generator's choice.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_RELEASE "-O3")
endforeach()
