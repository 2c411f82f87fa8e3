# Runs at install time. Installs the public headers with their includes of each other rewritten
# relative to the including header, so that they resolve whether include/UtilityGeometry or only
# include/ is on the user's include path. In the source tree the includes stay rooted at the
# repository root. Expects UG_SOURCE_DIR, UG_STAGE_DIR and UG_INCLUDE_DESTINATION.
file(REMOVE_RECURSE "${UG_STAGE_DIR}")
file(GLOB_RECURSE headers RELATIVE "${UG_SOURCE_DIR}" "${UG_SOURCE_DIR}/basics/*.h" "${UG_SOURCE_DIR}/geometry/*.h"
     "${UG_SOURCE_DIR}/tools/*.h")
list(APPEND headers UtilityGeometry.h)
foreach(header IN LISTS headers)
  file(READ "${UG_SOURCE_DIR}/${header}" text)
  get_filename_component(dir "${UG_SOURCE_DIR}/${header}" DIRECTORY)
  string(REGEX MATCHALL "#include \"[^\"]+\"" includes "${text}")
  list(REMOVE_DUPLICATES includes)
  foreach(directive IN LISTS includes)
    string(REGEX REPLACE "#include \"([^\"]+)\"" "\\1" target "${directive}")
    if(EXISTS "${UG_SOURCE_DIR}/${target}")
      file(RELATIVE_PATH relative "${dir}" "${UG_SOURCE_DIR}/${target}")
      string(REPLACE "${directive}" "#include \"${relative}\"" text "${text}")
    endif()
  endforeach()
  file(WRITE "${UG_STAGE_DIR}/${header}" "${text}")
endforeach()
file(INSTALL "${UG_STAGE_DIR}/" DESTINATION "${CMAKE_INSTALL_PREFIX}/${UG_INCLUDE_DESTINATION}")
