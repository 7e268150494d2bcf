# One room of the house = one static library made of every source below its folder: src/jet/table is tavrel-jet-table.
# A room is linked against the rooms that it names, and what it includes comes from those, and from what stands below
# them, or the build fails.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Programs land in bin/ of the build folder, whatever folder that is.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

find_program(TAVREL_CCACHE ccache)
if(TAVREL_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${TAVREL_CCACHE}")
endif()

add_library(tavrel-options INTERFACE)
target_include_directories(tavrel-options INTERFACE "${CMAKE_SOURCE_DIR}/src")
target_compile_definitions(tavrel-options INTERFACE TAVREL_VERSION="${PROJECT_VERSION}")
if(MSVC)
  target_compile_options(tavrel-options INTERFACE /utf-8 /W4 /permissive-)
else()
  target_compile_options(tavrel-options INTERFACE -Wall -Wextra -Wpedantic -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees these in std::string and std::variant where they are not.
    target_compile_options(tavrel-options INTERFACE
      -Wno-restrict -Wno-stringop-overread -Wno-free-nonheap-object)
  endif()
endif()
if(TAVREL_SANITIZE)
  target_compile_options(tavrel-options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tavrel-options INTERFACE -fsanitize=address,undefined)
endif()

# The sources of a folder that fit the platform being built for.
function(tavrel_sources out folder)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp")
  if(WIN32)
    list(FILTER found EXCLUDE REGEX "/posix/")
  else()
    list(FILTER found EXCLUDE REGEX "/win32/")
  endif()
  if(NOT found)
    set(found "${CMAKE_BINARY_DIR}/empty.cpp")
    file(TOUCH "${found}")
  endif()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# What the room of a folder is called.
function(tavrel_room_name out folder)
  string(REPLACE "/" "-" name "tavrel-${folder}")
  set(${out} ${name} PARENT_SCOPE)
endfunction()

# A room's rooms: those named, and those that they may use.
function(tavrel_rooms_below out)
  set(below)
  foreach(room IN LISTS ARGN)
    get_property(further GLOBAL PROPERTY "TAVREL_BELOW_${room}")
    list(APPEND below "${room}" ${further})
  endforeach()
  list(REMOVE_DUPLICATES below)
  set(${out} ${below} PARENT_SCOPE)
endfunction()

# The arrows of a target's sources are looked at whenever one of them has changed.
function(tavrel_check_arrows target folder)
  file(GLOB_RECURSE looked CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${folder}/*.h" "${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp")
  string(REPLACE ";" "," allowed "${ARGN}")
  set(stamp "${CMAKE_BINARY_DIR}/arrows/${target}")
  add_custom_command(OUTPUT "${stamp}"
    COMMAND "${CMAKE_COMMAND}" -DFOLDER=${folder} -DALLOWED=${allowed} -DSTAMP=${stamp}
      -P "${CMAKE_SOURCE_DIR}/cmake/CheckArrows.cmake"
    DEPENDS ${looked} "${CMAKE_SOURCE_DIR}/cmake/CheckArrows.cmake"
    WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}/src"
    COMMENT "Looking at the arrows of ${folder}" VERBATIM)
  add_custom_target(${target}-arrows DEPENDS "${stamp}")
  add_dependencies(${target} ${target}-arrows)
endfunction()

function(tavrel_room folder)
  tavrel_room_name(name ${folder})
  tavrel_sources(sources ${folder})
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC tavrel-options)
  foreach(room IN LISTS ARGN)
    tavrel_room_name(other ${room})
    target_link_libraries(${name} PUBLIC ${other})
  endforeach()
  tavrel_rooms_below(below ${ARGN})
  set_property(GLOBAL PROPERTY "TAVREL_BELOW_${folder}" "${below}")
  tavrel_check_arrows(${name} ${folder} ${folder} ${below})
endfunction()

function(tavrel_program program folder)
  tavrel_sources(sources ${folder})
  add_executable(${program} ${sources})
  target_link_libraries(${program} PRIVATE tavrel-options)
  foreach(room IN LISTS ARGN)
    tavrel_room_name(other ${room})
    target_link_libraries(${program} PRIVATE ${other})
  endforeach()
  tavrel_rooms_below(below ${ARGN})
  tavrel_check_arrows(${program} ${folder} ${folder} ${below})
endfunction()
