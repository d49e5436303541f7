# Finds LodePNG, which brings no description of itself: LodePng_FOUND and the target LodePng::LodePng.
find_path(LODEPNG_INCLUDE_DIR lodepng.h)
find_library(LODEPNG_LIBRARY lodepng)
mark_as_advanced(LODEPNG_INCLUDE_DIR LODEPNG_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LodePng REQUIRED_VARS LODEPNG_LIBRARY LODEPNG_INCLUDE_DIR)

if(LodePng_FOUND AND NOT TARGET LodePng::LodePng)
  add_library(LodePng::LodePng UNKNOWN IMPORTED)
  set_target_properties(LodePng::LodePng PROPERTIES
    IMPORTED_LOCATION ${LODEPNG_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${LODEPNG_INCLUDE_DIR})
endif()
