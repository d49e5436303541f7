# Qt's libraries are not compiled with the thread sanitizer. Calls of ours by which it hands work to another
# thread go through functions that tell the sanitizer so.
add_library(quilmora_thread_hand_overs STATIC ${PROJECT_SOURCE_DIR}/tests/support/tsanWrappers.cpp)
target_compile_options(quilmora_thread_hand_overs PRIVATE -fsanitize=thread)
target_link_libraries(quilmora_thread_hand_overs PUBLIC Qt6::Core)

set(handing_over
  _ZN7QObject11connectImplEPKS_PPvS1_S3_PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11QMetaObject
  _ZN7QThread5startENS_8PriorityE
  _ZN7QThread4waitE14QDeadlineTimer)
set(invoke _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeE)
if(Qt6_VERSION VERSION_LESS 6.8)
  list(APPEND handing_over ${invoke}Pv
    _ZN11QThreadPool5startESt8functionIFvvEEi
    _ZN11QThreadPool11waitForDoneEi)
else()
  list(APPEND handing_over ${invoke}xPKPKvPKPKcPKPKNS2_18QMetaTypeInterfaceE
    _ZN11QThreadPool5startEP9QRunnablei
    _ZN11QThreadPool11waitForDoneE14QDeadlineTimer)
endif()

target_link_libraries(quilmora_options INTERFACE quilmora_thread_hand_overs)
# Whether or not one of them is called: something else in there is needed everywhere.
target_link_options(quilmora_options INTERFACE "LINKER:--undefined=__wrap__ZN7QThread5startENS_8PriorityE")
list(TRANSFORM handing_over PREPEND "LINKER:--wrap=" OUTPUT_VARIABLE wrap_options)
target_link_options(quilmora_options INTERFACE ${wrap_options})

# Some of these functions are private and change with the version of Qt. A name that calls of ours do not end up at would
# be wrapped without an effect: linking such calls without the functions in place must miss every one of them.
try_compile(is_linked ${PROJECT_BINARY_DIR}/hand_overs ${PROJECT_SOURCE_DIR}/cmake/tsanWrappedCalls.cpp
  LINK_LIBRARIES Qt6::Core
  LINK_OPTIONS ${wrap_options}
  OUTPUT_VARIABLE messages
  CXX_STANDARD 20)
foreach(function IN LISTS handing_over)
  if(NOT messages MATCHES "__wrap_${function}")
    message(FATAL_ERROR "With Qt ${Qt6_VERSION}, tests/support/tsanWrappers.cpp wraps a function that is not called, "
      "${function}:\n${messages}")
  endif()
endforeach()
