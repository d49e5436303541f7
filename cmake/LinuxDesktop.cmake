# What is installed on Linux: the program and what the desktop needs to know of it.
include(GNUInstallDirs)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME quilmora)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(linux_sources ${PROJECT_SOURCE_DIR}/resources/linux)
set(linux_files ${PROJECT_BINARY_DIR}/linux)
configure_file(${linux_sources}/quilmora.desktop.in ${linux_files}/${QUILMORA_IDENTIFIER}.desktop @ONLY)
configure_file(${linux_sources}/quilmora.metainfo.xml.in ${linux_files}/${QUILMORA_IDENTIFIER}.metainfo.xml @ONLY)
configure_file(${linux_sources}/quilmora.1.in ${linux_files}/quilmora.1 @ONLY)

install(TARGETS quilmora)
install(FILES ${linux_files}/${QUILMORA_IDENTIFIER}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${linux_files}/${QUILMORA_IDENTIFIER}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/resources/logo/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons
  FILES_MATCHING PATTERN ${QUILMORA_IDENTIFIER}.*)
install(FILES ${linux_files}/quilmora.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${linux_sources}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quilmora)

include(${CMAKE_CURRENT_LIST_DIR}/DebianPackage.cmake)
