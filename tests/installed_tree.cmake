# Fails when `cmake --install` lays out anything but what belongs to the program.
# Called with -DBUILD_FOLDER=…, -DIDENTIFIER=… and -DTREE=…, a folder of the test's own.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${TREE})
execute_process(
  COMMAND ${CMAKE_COMMAND} --install ${BUILD_FOLDER} --prefix ${TREE} --component quilmora
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE found RELATIVE ${TREE} ${TREE}/*)

set(expected
  bin/quilmora
  share/applications/${IDENTIFIER}.desktop
  share/doc/quilmora/copyright
  share/icons/hicolor/scalable/apps/${IDENTIFIER}.svg
  share/man/man1/quilmora.1
  share/metainfo/${IDENTIFIER}.metainfo.xml)
foreach(side 16 22 24 32 48 64 128 256 512)
  list(APPEND expected share/icons/hicolor/${side}x${side}/apps/${IDENTIFIER}.png)
endforeach()

list(SORT found)
list(SORT expected)
if(NOT found STREQUAL expected)
  list(JOIN found "\n  " found_text)
  list(JOIN expected "\n  " expected_text)
  message(FATAL_ERROR "Installed:\n  ${found_text}\nExpected:\n  ${expected_text}")
endif()

# Everything that names the application to the desktop names it alike.
file(STRINGS ${TREE}/share/applications/${IDENTIFIER}.desktop icon REGEX "^Icon=${IDENTIFIER}$")
file(STRINGS ${TREE}/share/metainfo/${IDENTIFIER}.metainfo.xml names REGEX ">${IDENTIFIER}(\\.desktop)?<")
list(LENGTH names name_count)
if(NOT icon OR NOT name_count EQUAL 2)
  message(FATAL_ERROR "The desktop entry or the metainfo do not name ${IDENTIFIER}")
endif()
file(REMOVE_RECURSE ${TREE})
