# The build number as a file version holds it: 16 bits, decimal, without leading zeros (the resource compiler would take
# those for octal).  Anything else stops the configuration.
function(tavrel_build_number out given)
  if(NOT given MATCHES "^0*([0-9]+)$" OR CMAKE_MATCH_1 GREATER 65535)
    message(FATAL_ERROR "TAVREL_BUILD_NUMBER must be a number from 0 to 65535, not \"${given}\"")
  endif()
  string(REGEX REPLACE "^0+(.)" "\\1" plain "${given}")
  set(${out} "${plain}" PARENT_SCOPE)
endfunction()
