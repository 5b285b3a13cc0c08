# Installs the build into an empty tree, then builds and runs a consumer against it.
cmake_minimum_required(VERSION 3.25)
set(work ${BUILD_DIR}/install-test)
file(REMOVE_RECURSE ${work})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The README's example is the program of its first C++ block.
file(READ ${README} readme)
if(NOT readme MATCHES "```cpp\n([^`]*)```")
  message(FATAL_ERROR "the README has no C++ example")
endif()
file(WRITE ${work}/source/example.cpp "${CMAKE_MATCH_1}")
file(COPY ${CONSUMER_DIR}/CMakeLists.txt DESTINATION ${work}/source)

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${work}/prefix)
run(${CMAKE_COMMAND} -G Ninja -S ${work}/source -B ${work}/build -D CMAKE_BUILD_TYPE=Release
    -D CMAKE_PREFIX_PATH=${work}/prefix -D CMAKE_CXX_COMPILER=${CXX} "-D CMAKE_CXX_FLAGS=${CXX_FLAGS}")
run(${CMAKE_COMMAND} --build ${work}/build)
execute_process(COMMAND ${work}/build/example OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${printed}" printed)
if(NOT readme MATCHES "// ${printed}\n")
  message(FATAL_ERROR "the README's example prints '${printed}', not what its comment says")
endif()
run(${work}/prefix/bin/torvan-slice --help)
if(PYTHON)
  run(${CMAKE_COMMAND} -E env PYTHONPATH=${work}/prefix/${PYTHON_MODULES}
      ${PYTHON} -c "import orb.zero.meta, torvan.datamodel")
endif()
