# The libraries that we use, from Debian's packages; scripts/setup.sh fetches the sources of those that have to
# be built for the target.
set(VELVANE_SOURCES ${CMAKE_SOURCE_DIR}/.cache/sources)
foreach(name IN ITEMS pugixml minizip benchmark)
  if(NOT EXISTS ${VELVANE_SOURCES}/${name})
    message(FATAL_ERROR "The sources of ${name} are missing: run scripts/setup.sh")
  endif()
endforeach()

set(ZLIB_USE_STATIC_LIBS ON)
find_package(ZLIB REQUIRED)

# The two that read what we are given are watched by the memory checker and the fuzzers where we have these.
if(NOT WIN32)
  set(VELVANE_WATCH -fsanitize=address,fuzzer-no-link -fno-omit-frame-pointer)
endif()

add_library(minizip STATIC EXCLUDE_FROM_ALL
  ${VELVANE_SOURCES}/minizip/ioapi.c ${VELVANE_SOURCES}/minizip/unzip.c ${VELVANE_SOURCES}/minizip/zip.c)
target_include_directories(minizip SYSTEM PUBLIC ${VELVANE_SOURCES}/minizip)
target_compile_options(minizip PRIVATE -w ${VELVANE_WATCH})
target_link_libraries(minizip PUBLIC ZLIB::ZLIB)

add_library(pugixml STATIC EXCLUDE_FROM_ALL ${VELVANE_SOURCES}/pugixml/src/pugixml.cpp)
target_include_directories(pugixml SYSTEM PUBLIC ${VELVANE_SOURCES}/pugixml/src)
# Without exceptions nor XPath it has no way but return values.
target_compile_definitions(pugixml PUBLIC PUGIXML_NO_XPATH PUGIXML_NO_EXCEPTIONS)
target_compile_options(pugixml PRIVATE ${VELVANE_WATCH})

# Headers alone, the same for every target. They stand among the headers of the build host, which a cross build
# must not see, so only their own folder is shown.
set(VELVANE_JSON_INCLUDE ${CMAKE_BINARY_DIR}/nlohmann_json)
file(MAKE_DIRECTORY ${VELVANE_JSON_INCLUDE})
file(CREATE_LINK /usr/include/nlohmann ${VELVANE_JSON_INCLUDE}/nlohmann SYMBOLIC)
add_library(nlohmann_json INTERFACE)
target_include_directories(nlohmann_json SYSTEM INTERFACE ${VELVANE_JSON_INCLUDE})

set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)

if(WIN32)
  # Its own build files want a git checkout for their version.
  file(GLOB benchmark_files ${VELVANE_SOURCES}/benchmark/src/*.cc)
  list(FILTER benchmark_files EXCLUDE REGEX benchmark_main)
  add_library(benchmark STATIC EXCLUDE_FROM_ALL ${benchmark_files})
  target_include_directories(benchmark SYSTEM PUBLIC ${VELVANE_SOURCES}/benchmark/include)
  target_compile_definitions(benchmark PUBLIC BENCHMARK_STATIC_DEFINE PRIVATE HAVE_STD_REGEX)
  target_compile_options(benchmark PRIVATE -w)
  target_link_libraries(benchmark PUBLIC shlwapi)
endif()
