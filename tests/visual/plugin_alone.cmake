# Builds the plug-in template away from the tree, against the installed header alone.
#   cmake -DBUILD=build folder -DWORK=scratch folder -P plugin_alone.cmake

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE text ERROR_VARIABLE text)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}:\n${text}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix --component plugin_development)
file(GLOB_RECURSE template ${WORK}/prefix/*/my_visual.cpp)
get_filename_component(folder ${template} DIRECTORY)
file(COPY ${folder}/ DESTINATION ${WORK}/source)
run(${CMAKE_COMMAND} -S ${WORK}/source -B ${WORK}/build -G Ninja
    -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_CXX_FLAGS=-O0)
run(${CMAKE_COMMAND} --build ${WORK}/build)
if(NOT EXISTS ${WORK}/build/my_visual.so)
  message(FATAL_ERROR "no library was made")
endif()
file(REMOVE_RECURSE ${WORK})
