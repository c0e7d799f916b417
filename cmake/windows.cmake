# What the build for Windows does differently. Which sources differ is decided in platform/CMakeLists.txt.
add_compile_definitions(NOMINMAX NOGDI WIN32_LEAN_AND_MEAN WINVER=0x0A00 _WIN32_WINNT=0x0A00)
# The programs need no file beside those of Windows.
add_link_options(-static)
# Paths are made of UTF-8 texts in every program and library: utf8_paths.c says how.
set(pathConversion _ZNKSt7codecvtIwciE5do_inERiPKcS3_RS3_PwS5_RS5_)
add_library(qmx_utf8_paths STATIC)
target_link_libraries(qmx_utf8_paths PRIVATE qmx_warnings)
add_link_options(LINKER:--wrap=${pathConversion} LINKER:--undefined=__wrap_${pathConversion})
link_libraries(qmx_utf8_paths)

# The zip file is unpacked anywhere. The sandbox is not in the folder that is searched by default: the program asks the manifests
# there before COM, so the sandbox would take the place of the ERP's registered classes.
set(CMAKE_INSTALL_BINDIR .)
set(QMX_COMPONENT_DESTINATION sandbox)
set(QMX_INSTALLED_COMPONENT_DIR components)

# Under Wine this machine's files are on that drive.
set(QMX_DRIVE Z:)

# Half of the build's time would go into optimising tests. Without -Og they have five times the functions, and the linker's time grows with
# the square of their number.
target_compile_options(qmx_test_options INTERFACE -Og)
set(ZLIB_USE_STATIC_LIBS ON)

# COM takes the place of the bridge to Java there. The others are Debian's packages, and what measures and searches on Linux.
set(QMX_LEFT_OUT bench bridges packaging sandbox/java docs/examples/java)
include(${PROJECT_SOURCE_DIR}/tests/windows/left_out.cmake)
