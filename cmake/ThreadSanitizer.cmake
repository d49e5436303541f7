# The toolkit's libraries are not compiled with the thread sanitizer. Calls of ours by which it hands work to another
# thread go through functions that tell the sanitizer so.
add_library(quilmora_thread_hand_overs STATIC ${PROJECT_SOURCE_DIR}/tests/support/threadHandOvers.cpp)
target_compile_options(quilmora_thread_hand_overs PRIVATE -fsanitize=thread)
target_link_libraries(quilmora_thread_hand_overs PUBLIC Qt6::Core)

target_link_libraries(quilmora_options INTERFACE quilmora_thread_hand_overs)
# Whether or not one of them is called: something else in there is needed everywhere.
target_link_options(quilmora_options INTERFACE "LINKER:--undefined=__wrap__ZN7QThread5startENS_8PriorityE")
foreach(function IN ITEMS
    _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv
    _ZN7QObject11connectImplEPKS_PPvS1_S3_PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11QMetaObject
    _ZN7QThread5startENS_8PriorityE
    _ZN7QThread4waitE14QDeadlineTimer
    _ZN11QThreadPool5startESt8functionIFvvEEi
    _ZN11QThreadPool11waitForDoneEi)
  target_link_options(quilmora_options INTERFACE "LINKER:--wrap=${function}")
endforeach()
