# Libraries that are headers alone are the same for every platform; those installed on this machine serve a
# cross build too, without the rest of this machine's headers.
foreach(library CLI nlohmann)
  find_path(TAVREL_${library}_HEADERS ${library} NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include /usr/local/include)
  if(TAVREL_${library}_HEADERS)
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/include")
    file(CREATE_LINK "${TAVREL_${library}_HEADERS}/${library}" "${CMAKE_BINARY_DIR}/include/${library}" SYMBOLIC)
  endif()
endforeach()
include_directories(SYSTEM "${CMAKE_BINARY_DIR}/include")
