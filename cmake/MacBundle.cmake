# Quilmora.app and its disk image: `cmake --install` puts Qt into the bundle and signs it for this machine's own use,
# `cpack` makes the image.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME quilmora)

set(bundle_files ${PROJECT_SOURCE_DIR}/resources/logo/Quilmora.icns ${PROJECT_SOURCE_DIR}/LICENSE)
target_sources(quilmora PRIVATE ${bundle_files})
set_source_files_properties(${bundle_files} TARGET_DIRECTORY quilmora PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(quilmora PROPERTIES
  OUTPUT_NAME Quilmora
  MACOSX_BUNDLE ON
  MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/resources/macos/Info.plist.in
  MACOSX_BUNDLE_GUI_IDENTIFIER ${QUILMORA_IDENTIFIER}
  MACOSX_BUNDLE_BUNDLE_NAME Quilmora
  MACOSX_BUNDLE_ICON_FILE Quilmora.icns
  MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
  MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
  MACOSX_BUNDLE_COPYRIGHT "The Quilmora authors")
install(TARGETS quilmora BUNDLE DESTINATION .)

if(Qt6_VERSION VERSION_LESS 6.5)
  qt_generate_deploy_app_script(TARGET quilmora FILENAME_VARIABLE deploy_script)
else()
  qt_generate_deploy_app_script(TARGET quilmora OUTPUT_SCRIPT deploy_script)
endif()
install(SCRIPT ${deploy_script})

# Deployment changes what the linker has signed; what is inside is signed before what is around it.
install(CODE [[
  set(bundle $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/Quilmora.app)
  file(GLOB_RECURSE libraries ${bundle}/Contents/*.dylib)
  file(GLOB frameworks ${bundle}/Contents/Frameworks/*.framework)
  foreach(part IN LISTS libraries frameworks ITEMS ${bundle})
    execute_process(COMMAND codesign --force --sign - ${part} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  execute_process(COMMAND codesign --verify --deep --strict ${bundle} COMMAND_ERROR_IS_FATAL ANY)
]])

set(CPACK_GENERATOR DragNDrop)
set(CPACK_PACKAGE_FILE_NAME Quilmora-${PROJECT_VERSION})
set(CPACK_DMG_VOLUME_NAME Quilmora)
set(CPACK_STRIP_FILES ON)
include(CPack)
