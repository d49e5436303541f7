# Called by CPack once everything lies where it is packed from: adds the package's changelog, and compresses what Debian
# wants compressed.
set(share ${CPACK_TEMPORARY_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
file(COPY ${CPACK_QUILMORA_CHANGELOG} DESTINATION ${share}/doc/quilmora
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
execute_process(
  COMMAND gzip --best --no-name ${share}/doc/quilmora/changelog ${share}/man/man1/quilmora.1
  COMMAND_ERROR_IS_FATAL ANY)
