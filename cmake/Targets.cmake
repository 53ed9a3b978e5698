# What all of our own targets are built with.
add_library(velvane_options INTERFACE)
target_include_directories(velvane_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(velvane_options INTERFACE
  -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual -Wimplicit-fallthrough -Werror -fstack-protector-strong)
target_compile_definitions(velvane_options INTERFACE _GLIBCXX_ASSERTIONS)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees overlapping copies in every std::string sum.
  target_compile_options(velvane_options INTERFACE -Wno-restrict)
endif()
if(WIN32)
  # The version macros name what the calls need, not what the program is told: Windows 7.
  target_compile_definitions(velvane_options INTERFACE
    NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 WINVER=0x0601 _FORTIFY_SOURCE=2)
  target_link_options(velvane_options INTERFACE
    -fstack-protector-strong -Wl,--dynamicbase,--nxcompat -s)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    target_link_options(velvane_options INTERFACE -Wl,--high-entropy-va)
  endif()
else()
  set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(velvane_options INTERFACE ${sanitize} -fsanitize=fuzzer-no-link)
  target_link_options(velvane_options INTERFACE ${sanitize})
endif()

# A library of one folder of src/.
function(velvane_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC velvane_options)
endfunction()

# A program of ours: with the manifest that sets the code page.
function(velvane_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE velvane_options)
  if(WIN32)
    target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/resources/manifest.rc)
    set_source_files_properties(${CMAKE_SOURCE_DIR}/resources/manifest.rc PROPERTIES
      OBJECT_DEPENDS ${CMAKE_SOURCE_DIR}/resources/velvane.manifest)
  endif()
endfunction()

# Sets `variable` to a resource file with the version of our file `file`; `type` is one of winver.h's VFT_ names.
function(velvane_version variable file type description)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${file}-version.rc)
  configure_file(${CMAKE_SOURCE_DIR}/resources/version.rc.in ${resource} @ONLY)
  set(${variable} ${resource} PARENT_SCOPE)
endfunction()

# A test program, run by ctest in a prefix of its own.
function(velvane_test name)
  velvane_program(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES VELVANE_EARLY_LIBRARIES ON)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "VELVANE_PREFIX=${name}" TIMEOUT 600)
endfunction()

# A fuzz target, run by ctest for half a minute from the seeds in corpus/<name>. What it learns stays in the build
# folder for the next run, and so does an input that brings it down.
function(velvane_fuzzer name)
  cmake_parse_arguments(PARSE_ARGV 1 fuzz "" "MAX_LEN;DICT" "")
  velvane_program(${name} ${fuzz_UNPARSED_ARGUMENTS})
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  set(learned ${CMAKE_CURRENT_BINARY_DIR}/${name})
  file(MAKE_DIRECTORY ${learned})
  add_test(NAME ${name} COMMAND ${name} -max_total_time=30 -seed=1 -max_len=${fuzz_MAX_LEN} -rss_limit_mb=512
    -timeout=10 -print_final_stats=1 -artifact_prefix=${learned}- ${fuzz_DICT}
    ${learned} ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS fuzz)
endfunction()
