# Warnings and sanitizers for every target of the project, and the two shapes of target it is made of.

add_library(quillomar_options INTERFACE)
target_compile_options(quillomar_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wold-style-cast -Wimplicit-fallthrough)
if(QUILLOMAR_WERROR)
  target_compile_options(quillomar_options INTERFACE -Werror)
endif()
if(QUILLOMAR_SANITIZE)
  target_compile_options(quillomar_options INTERFACE
    -fsanitize=${QUILLOMAR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quillomar_options INTERFACE -fsanitize=${QUILLOMAR_SANITIZE})
endif()

if(QUILLOMAR_FUZZ)
  target_compile_options(quillomar_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# quillomar_library(NAME base LINKS ...): the folder's sources as one static library that may use
# only the libraries named.
function(quillomar_library)
  cmake_parse_arguments(ARG "" "NAME" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_library(quillomar_${ARG_NAME} STATIC ${sources})
  set_target_properties(quillomar_${ARG_NAME} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(quillomar_${ARG_NAME} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(quillomar_${ARG_NAME} PUBLIC ${ARG_LINKS} PRIVATE quillomar_options)
endfunction()

# quillomar_test(NAME spu LINKS ... PROPERTIES ...): all sources of the folder as one GoogleTest
# program, with properties for each of its tests.
function(quillomar_test)
  cmake_parse_arguments(ARG "" "NAME" "LINKS;PROPERTIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_executable(test_${ARG_NAME} ${sources})
  target_include_directories(test_${ARG_NAME} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(test_${ARG_NAME} PRIVATE ${ARG_LINKS} quillomar_options GTest::gtest_main)
  gtest_discover_tests(test_${ARG_NAME} DISCOVERY_MODE PRE_TEST PROPERTIES "${ARG_PROPERTIES}")
endfunction()
