# Rules shared by every target: warnings are errors, one precompiled header, sanitizers on request.

# With an empty cache it takes a tenth longer, so it is asked for by those who build often.
option(TWK_CCACHE "Compile through ccache" OFF)
if(TWK_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ccache)
endif()

# Thirty test programs are linked in seconds instead of minutes.
find_program(TWK_MOLD mold)
if(TWK_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

# Libraries come from where the system looks for them. A run path of the build may hold an empty entry, which means the
# current folder.
set(CMAKE_SKIP_RPATH ON)

# Compiled as a library is (-fPIC), for the module of real domains; with -fPIE a program also holds copies of Qt's own
# variables, which Qt does not look at, and ends at its start.
add_library(twk_warnings INTERFACE)
target_compile_options(twk_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fPIC)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees faults in joining std::string when it optimizes (GCC bug 105329).
  target_compile_options(twk_warnings INTERFACE -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND TWK_CCACHE)
  target_compile_options(twk_warnings INTERFACE -fpch-preprocess)
endif()

# twk_join_folders(<target>): with CMAKE_UNITY_BUILD the sources of one folder are compiled as one, which takes less than half
# the time: most of it goes into templates that all of them use. So no two sources of a folder share a name, in an unnamed
# namespace neither.
function(twk_join_folders target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    if(source MATCHES "\\.cpp$")
      file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${source}/..)
      string(MAKE_C_IDENTIFIER ${folder} group)
      set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
    endif()
  endforeach()
endfunction()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # What a source keeps to itself is seen as a header's there.
  target_compile_options(twk_warnings INTERFACE -Wno-subobject-linkage)
endif()

# What makes a fault hard to use, in what is given to people; position-independent as every program. The options of the
# debug and sanitized builds find such faults in their own way. Functions and lines are what a report of a fault needs of
# debugging information (-g1); the whole of it would take 4 parts in 10 more time.
if(CMAKE_BUILD_TYPE STREQUAL "RelWithDebInfo" AND NOT TWK_SANITIZE)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-fcf-protection TWK_CAN_PROTECT_BRANCHES)
  target_compile_options(twk_warnings INTERFACE -g1 -fstack-protector-strong -fstack-clash-protection
    $<$<BOOL:${TWK_CAN_PROTECT_BRANCHES}>:-fcf-protection> -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -D_GLIBCXX_ASSERTIONS)
  target_link_options(twk_warnings INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie> -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# Of the program, and of its tests: to look for undefined behaviour in a test's own code as well would cost half as much
# again as the rest of its compilation.
add_library(twk_rules INTERFACE)
add_library(twk_test_rules INTERFACE)
target_link_libraries(twk_rules INTERFACE twk_warnings)
target_link_libraries(twk_test_rules INTERFACE twk_warnings)
if(TWK_SANITIZE)
  # Lines of a report are all that debugging information is for here.
  target_compile_options(twk_warnings INTERFACE -fno-omit-frame-pointer -g1)
  target_link_options(twk_warnings INTERFACE -fsanitize=${TWK_SANITIZE})
  target_compile_options(twk_rules INTERFACE -fsanitize=${TWK_SANITIZE} -fno-sanitize-recover=all)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Undefined behaviour ends the program with its stack, which names the line. To say what it was as well, each check
    # would carry a description: programs of twice the size, which take twice as long to start.
    target_compile_options(twk_rules INTERFACE -fsanitize-undefined-trap-on-error)
  endif()
  string(REGEX REPLACE ",?undefined" "" of_tests "${TWK_SANITIZE}")
  if(of_tests)
    target_compile_options(twk_test_rules INTERFACE -fsanitize=${of_tests} -fno-sanitize-recover=all)
  endif()
endif()

# These sources know the version; only they are compiled anew when it changes.
function(twk_version)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_DEFINITIONS TWK_VERSION="${PROJECT_VERSION}")
endfunction()

# twk_library(<name> [OBJECTS] FOLDERS <folder>… [WITHOUT <folder>] LINKS <library>…): one library from the sources of some
# folders of src/ with their sub-folders but for one.
function(twk_library name)
  cmake_parse_arguments(ARG "OBJECTS" "WITHOUT" "FOLDERS;LINKS" ${ARGN})
  set(globs ${ARG_FOLDERS})
  list(TRANSFORM globs PREPEND ${PROJECT_SOURCE_DIR}/src/)
  list(TRANSFORM globs APPEND /*.cpp)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${globs})
  if(ARG_WITHOUT)
    list(FILTER sources EXCLUDE REGEX ^${PROJECT_SOURCE_DIR}/src/${ARG_WITHOUT}/)
  endif()
  set(kind STATIC)
  if(ARG_OBJECTS)
    set(kind OBJECT)
  endif()
  add_library(${name} ${kind} ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE twk_rules)
  twk_join_folders(${name})
  if(NOT name STREQUAL twk_base)
    target_precompile_headers(${name} REUSE_FROM twk_base)
  endif()
endfunction()
