# What a release has beyond other builds: it is optimised as a whole, keeps its names to itself, and is hardened. Debug
# builds, and with them those for sanitizers and fuzzers, get none of it.
if(NOT CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" OR QUILMORA_SANITIZERS)
  return()
endif()

if(NOT DEFINED CMAKE_INTERPROCEDURAL_OPTIMIZATION)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT ipo_supported LANGUAGES CXX)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ${ipo_supported} CACHE BOOL "Optimise the program as a whole when it is linked")
endif()
if(CMAKE_INTERPROCEDURAL_OPTIMIZATION AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Qt wants no program to keep copies of its data, which is why all is compiled as for libraries. When a program is
  # linked the compiler forgets that, unless told again.
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-mno-direct-extern-access has_indirect_access)
  # The warning is about a size in Qt's hash tables that never comes about.
  target_link_options(quilmora_options INTERFACE
    $<$<BOOL:${has_indirect_access}>:-mno-direct-extern-access> -Wno-alloc-size-larger-than)
endif()

set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Taken back first: some compilers come with a setting of their own, and complain of two.
target_compile_options(quilmora_options INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  target_link_options(quilmora_options INTERFACE LINKER:-z,relro,-z,now,--as-needed)
endif()
