# Puts Qt's own Chinese texts into a target as the resource ":/translations/qtbase_zh_CN.qm", so that error
# messages and standard dialogs are Chinese on machines without Qt's translations too.
function(quilmora_embed_chinese_translations target)
  get_target_property(qmake Qt6::qmake IMPORTED_LOCATION)
  execute_process(COMMAND ${qmake} -query QT_INSTALL_TRANSLATIONS
    OUTPUT_VARIABLE translations OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  find_file(QUILMORA_CHINESE_TRANSLATIONS qtbase_zh_CN.qm
    PATHS
      ${translations}
      ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_TRANSLATIONS}
      ${QT6_INSTALL_PREFIX}/share/qt6/translations
      ${QT6_INSTALL_PREFIX}/share/qt/translations
    NO_DEFAULT_PATH
    DOC "Qt's Chinese texts, to be put into the program")
  mark_as_advanced(QUILMORA_CHINESE_TRANSLATIONS)
  if(NOT QUILMORA_CHINESE_TRANSLATIONS)
    message(WARNING
      "qtbase_zh_CN.qm not found (Debian and Ubuntu: qt6-translations-l10n): "
      "the program's error messages stay English on machines that lack it.")
    return()
  endif()
  set_source_files_properties(${QUILMORA_CHINESE_TRANSLATIONS} PROPERTIES QT_RESOURCE_ALIAS qtbase_zh_CN.qm)
  qt_add_resources(${target} chinese_translations PREFIX /translations FILES ${QUILMORA_CHINESE_TRANSLATIONS})
endfunction()
