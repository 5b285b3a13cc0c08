# A shared library of all sources below a folder, but for those below EXCLUDE, whose headers are
# included by their path from the top. Installed with its headers, and exported as torvan::<name
# without "torvan_">.
function(torvan_library name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "FOLDER;EXCLUDE" "HEADERS")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${ARG_FOLDER}/*.cpp)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${ARG_FOLDER}/*.h)
  if(ARG_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX /${ARG_EXCLUDE}/)
    list(FILTER headers EXCLUDE REGEX /${ARG_EXCLUDE}/)
  endif()
  add_library(${name} SHARED ${sources})
  string(REPLACE "torvan_" "" exported ${name})
  add_library(torvan::${exported} ALIAS ${name})
  set(internal ${headers})
  list(FILTER headers EXCLUDE REGEX /impl/)
  list(FILTER internal INCLUDE REGEX /impl/)
  target_sources(${name} PUBLIC
    FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers} ${ARG_HEADERS}
    FILE_SET internal TYPE HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${internal})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_compile_options(${name} PRIVATE -fno-semantic-interposition)
  set_target_properties(${name} PROPERTIES
    EXPORT_NAME ${exported}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    VERIFY_INTERFACE_HEADER_SETS ON       # each public header stands by itself
    INTERFACE_HEADER_SETS_TO_VERIFY HEADERS)
  install(TARGETS ${name} EXPORT torvan_datamodel FILE_SET HEADERS FILE_SET internal)
endfunction()
