# What every target of the project is compiled with; link it privately.
add_library(quilmora_options INTERFACE)

target_compile_options(quilmora_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wold-style-cast -Wcast-qual -Wformat=2 -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(quilmora_options INTERFACE -Wduplicated-cond -Wlogical-op)
endif()

target_compile_definitions(quilmora_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_CONTEXTLESS_CONNECT QT_NO_FOREACH QT_NO_KEYWORDS
  QT_NO_JAVA_STYLE_ITERATORS QT_STRICT_ITERATORS QT_USE_QSTRINGBUILDER
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# Clazy looks at what is compiled anyway, which costs a tenth of what a run of its own does. A folder may choose other
# checks, or none, by setting QUILMORA_CLAZY_CHECKS before its targets.
if(QUILMORA_CLAZY AND NOT APPLE)
  find_library(CLAZY_PLUGIN ClazyPlugin.so REQUIRED)
  mark_as_advanced(CLAZY_PLUGIN)
  set(QUILMORA_CLAZY_CHECKS level1)
  define_property(TARGET PROPERTY QUILMORA_CLAZY_CHECKS INITIALIZE_FROM_VARIABLE QUILMORA_CLAZY_CHECKS)
  set(checks $<TARGET_PROPERTY:QUILMORA_CLAZY_CHECKS>)
  target_compile_options(quilmora_options INTERFACE
    "$<$<BOOL:${checks}>:SHELL:-fplugin=${CLAZY_PLUGIN} -Xclang -add-plugin -Xclang clazy>"
    "$<$<BOOL:${checks}>:SHELL:-Xclang -plugin-arg-clazy -Xclang ${checks}>")
endif()

if(QUILMORA_SANITIZERS)
  target_compile_options(quilmora_options INTERFACE
    -fsanitize=${QUILMORA_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quilmora_options INTERFACE -fsanitize=${QUILMORA_SANITIZERS})
  if(QUILMORA_SANITIZERS MATCHES "thread")
    include(cmake/ThreadSanitizer.cmake)
  endif()
endif()
