# Finds libdeflate: Libdeflate_FOUND and the target Libdeflate::Libdeflate. Not every system's package brings a
# configuration of its own for CMake.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
  pkg_check_modules(PC_LIBDEFLATE QUIET libdeflate)
endif()
find_path(LIBDEFLATE_INCLUDE_DIR libdeflate.h HINTS ${PC_LIBDEFLATE_INCLUDE_DIRS})
find_library(LIBDEFLATE_LIBRARY NAMES deflate libdeflate HINTS ${PC_LIBDEFLATE_LIBRARY_DIRS})
mark_as_advanced(LIBDEFLATE_INCLUDE_DIR LIBDEFLATE_LIBRARY)

if(LIBDEFLATE_INCLUDE_DIR)
  file(STRINGS ${LIBDEFLATE_INCLUDE_DIR}/libdeflate.h version_line REGEX "define[ \t]+LIBDEFLATE_VERSION_STRING")
  string(REGEX MATCH "[0-9]+(\\.[0-9]+)+" Libdeflate_VERSION "${version_line}")
  unset(version_line)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Libdeflate
  REQUIRED_VARS LIBDEFLATE_LIBRARY LIBDEFLATE_INCLUDE_DIR
  VERSION_VAR Libdeflate_VERSION)

if(Libdeflate_FOUND AND NOT TARGET Libdeflate::Libdeflate)
  add_library(Libdeflate::Libdeflate UNKNOWN IMPORTED)
  set_target_properties(Libdeflate::Libdeflate PROPERTIES
    IMPORTED_LOCATION ${LIBDEFLATE_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${LIBDEFLATE_INCLUDE_DIR})
endif()
