# What every target of the project is compiled and linked with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_C_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
# Sanitizers at -O0 are too slow for the terms of a million brackets.
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g")

# For the project's own sources; GoogleTest's do without the warnings.
add_library(project_options INTERFACE)
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
  # A function that ends without its return runs on into the next one.
  -Werror=return-type
  # The same roundings on every machine and in every preset.
  -ffp-contract=off)

if(ZEPKIT10_SANITIZERS)
  add_compile_options(-fsanitize=${ZEPKIT10_SANITIZERS} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZEPKIT10_SANITIZERS})
endif()

# For what tests are to run, and for the tests, which make functions of its headers as well: has gcov
# count what runs, where that is wanted.
add_library(counted INTERFACE)
if(ZEPKIT10_COVERAGE)
  # Not optimized, so that each branch is the source's; and threads lose none of each other's counts.
  target_compile_options(counted INTERFACE -O0 --coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

if(WIN32)
  add_compile_definitions(UNICODE _UNICODE _WIN32_WINNT=0x0601)
  # GCC 12 warns of the standard library's own strings.
  add_compile_options(-Wno-array-bounds -Wno-stringop-overread -Wno-stringop-overflow)
  # Nobody has the DLLs of this compiler; the same sources give the same bytes.
  add_link_options(-static -Wl,--no-insert-timestamp)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # SSE2 gives the floating-point results and flags of the 64-bit build. Clients align the stack to
    # 4 bytes only, SSE wants 16.
    add_compile_options(-msse2 -mfpmath=sse -mstackrealign)
  endif()
endif()
