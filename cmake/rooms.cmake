# Settings that all rooms share: language, warnings, sanitizers, output folders.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# The folders with the sources for this operating system: platform/posix and others.
if(WIN32)
  set(QMX_SYSTEM windows)
else()
  set(QMX_SYSTEM posix)
  # What is built for Windows only.
  set(QMX_LEFT_OUT bench/com packaging/windows sandbox/com tests/platform/com tests/platform/odbc/windows
      tests/platform/windows tests/sandbox/com tests/tools/qmxadmin/system/console_requests_test.cpp
      tests/tools/qmxadmin/system/open_files_test.cpp)
endif()

# The build tree looks like the installed one: the component servers and their manifests share a folder.
set(QMX_COMPONENT_DIR ${CMAKE_BINARY_DIR}/components)
file(MAKE_DIRECTORY ${QMX_COMPONENT_DIR})
set(QMX_COMPONENT_DESTINATION ${CMAKE_INSTALL_LIBDIR}/qmxdatacopy/components)
set(QMX_INSTALLED_COMPONENT_DIR ${CMAKE_INSTALL_PREFIX}/${QMX_COMPONENT_DESTINATION})

# The default package of installed files.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME qmxdatacopy)

option(QMX_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(QMX_SANITIZE_THREADS "Build with ThreadSanitizer, which excludes the other two" OFF)
option(QMX_WARNINGS_ARE_ERRORS "Treat warnings as errors, as all presets do; off by default, for other compilers" OFF)
option(QMX_COVERAGE "Count the lines and branches of the rooms that the tests reach, which needs g++" OFF)
option(QMX_FUZZ "Build the fuzz targets, which needs clang; use with QMX_SANITIZE" OFF)
set(QMX_JOIN_SOURCES "" CACHE STRING "What is compiled several sources at once, in half the time: a list of rooms, tools, tests")

# The warnings of every target. Presets make them errors.
add_library(qmx_warnings INTERFACE)
target_compile_options(qmx_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
if(QMX_WARNINGS_ARE_ERRORS)
  target_compile_options(qmx_warnings INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # g++ 12 sees overlaps in std::string's own operator+ when it optimises (GCC bug 105651).
  target_compile_options(qmx_warnings INTERFACE -Wno-restrict)
endif()

# The rooms have both sanitizers, without the checks that AddressSanitizer covers anyway. The tests' own code has only
# AddressSanitizer, because it takes most of the build.
add_library(qmx_options INTERFACE)
add_library(qmx_test_options INTERFACE)
target_link_libraries(qmx_options INTERFACE qmx_warnings)
target_link_libraries(qmx_test_options INTERFACE qmx_warnings)
if(QMX_SANITIZE)
  target_compile_options(qmx_options INTERFACE -fsanitize=address,undefined -fno-sanitize=null,alignment,object-size -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(qmx_test_options INTERFACE -fsanitize=address -fno-omit-frame-pointer)
  target_link_options(qmx_options INTERFACE -fsanitize=address,undefined)
  target_link_options(qmx_test_options INTERFACE -fsanitize=address,undefined)
elseif(QMX_SANITIZE_THREADS)
  foreach(options qmx_options qmx_test_options)
    target_compile_options(${options} INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(${options} INTERFACE -fsanitize=thread)
  endforeach()
endif()

if(QMX_COVERAGE)
  target_compile_options(qmx_options INTERFACE --coverage -fprofile-abs-path)
  # A process that ends by _exit writes its counts too (tests/support/counted_exit.c).
  foreach(options qmx_options qmx_test_options)
    target_link_options(${options} INTERFACE --coverage LINKER:--wrap=_exit,--wrap=_Exit)
    target_link_libraries(${options} INTERFACE $<TARGET_OBJECTS:qmx_counted_exit>)
  endforeach()
endif()

# Each branch reports to libFuzzer, and each line is counted for ./fuzz.sh --coverage.
if(QMX_FUZZ)
  set(fuzzFlags -fsanitize=fuzzer-no-link -fprofile-instr-generate -fcoverage-mapping)
  target_compile_options(qmx_options INTERFACE ${fuzzFlags})
  target_link_options(qmx_options INTERFACE ${fuzzFlags})
endif()

if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
else()
  # Release builds are hardened like Debian's own packages: the C library checks known buffer sizes, and function addresses
  # are bound at start and then read-only.
  add_compile_options($<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
  add_link_options($<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)
endif()

# QMX_LEFT_OUT has folders and sources that this build leaves out, by their path in the tree (cmake/windows.cmake).

# qmx_built_sources(VARIABLE source...): sets the variable to the sources that are not left out.
function(qmx_built_sources variable)
  set(built "")
  foreach(source ${ARGN})
    cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE place)
    cmake_path(RELATIVE_PATH place BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
    if(NOT place IN_LIST QMX_LEFT_OUT)
      list(APPEND built ${source})
    endif()
  endforeach()
  set(${variable} ${built} PARENT_SCOPE)
endfunction()

# qmx_folder(NAME): add_subdirectory, unless the folder is left out.
macro(qmx_folder name)
  file(RELATIVE_PATH folderInTree ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/${name})
  if(NOT folderInTree IN_LIST QMX_LEFT_OUT)
    add_subdirectory(${name})
  endif()
endmacro()

# qmx_join_sources(TARGET KIND): compiles several of its sources at once where the preset asks for it.
function(qmx_join_sources target kind)
  if(kind IN_LIST QMX_JOIN_SOURCES)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()

# qmx_room(NAME [JOIN kind] SOURCES file... [LINKS library...]): a static library whose headers are included from the root
# of the tree. JOIN is what its sources are joined with: "rooms" if it is not named; "none" where they use the same names.
function(qmx_room name)
  cmake_parse_arguments(PARSE_ARGV 1 room "" "JOIN" "SOURCES;LINKS")
  if(NOT room_JOIN)
    set(room_JOIN rooms)
  endif()
  qmx_built_sources(sources ${room_SOURCES})
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${room_LINKS} PRIVATE qmx_options)
  qmx_join_sources(${name} ${room_JOIN})
endfunction()

# qmx_program(NAME): gives the program its resources, where the operating system has such.
function(qmx_program name)
  if(TARGET ${name}_resources)
    target_link_libraries(${name} PRIVATE ${name}_resources)
  endif()
endfunction()

# qmx_component_server(NAME SOURCES file... [MANIFEST file] [LINKS library...]): a shared library that a host loads, and its manifest.
# It sees the public component-server header and nothing else of the product.
function(qmx_component_server name)
  cmake_parse_arguments(PARSE_ARGV 1 server "" "MANIFEST" "SOURCES;LINKS")
  add_library(${name} MODULE ${server_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE qmx_component_api ${server_LINKS} qmx_options)
  set_target_properties(${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${QMX_COMPONENT_DIR}
                        CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  if(server_MANIFEST)
    configure_file(${server_MANIFEST} ${QMX_COMPONENT_DIR} @ONLY)
  endif()
endfunction()

# qmx_install_component_server(NAME MANIFEST COMPONENT package): into the folder that hosts search by default.
function(qmx_install_component_server name manifest)
  install(TARGETS ${name} LIBRARY DESTINATION ${QMX_COMPONENT_DESTINATION} ${ARGN})
  install(FILES ${QMX_COMPONENT_DIR}/${manifest} DESTINATION ${QMX_COMPONENT_DESTINATION} ${ARGN})
endfunction()

# qmx_test(NAME SOURCES file... [LINKS library...] [LONG pattern...]): one test program of a room; every test in it is a test of ctest.
# LONG has patterns of googletest, of the tests that scripts/long_tests.sh runs instead of ./test.sh.
# Set SKIP_UNITY_BUILD_INCLUSION on sources whose names clash with those of others.
function(qmx_test name)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "" "SOURCES;LINKS;LONG")
  qmx_built_sources(sources ${test_SOURCES})
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${test_LINKS} GTest::gmock GTest::gtest_main qmx_test_options)
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  qmx_join_sources(${name} tests)
  target_precompile_headers(${name} REUSE_FROM qmx_test_headers)
  if(TARGET tests_resources)
    target_link_libraries(${name} PRIVATE tests_resources)
  endif()
  set(discovery DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
  if(test_LONG)
    list(JOIN test_LONG ":" long)
    gtest_discover_tests(${name} TEST_FILTER -${long} ${discovery} LABELS ${name})
    gtest_discover_tests(${name} TEST_FILTER ${long} TEST_LIST ${name}_LONG ${discovery} LABELS long)
  else()
    gtest_discover_tests(${name} ${discovery} LABELS ${name})
  endif()
endfunction()
