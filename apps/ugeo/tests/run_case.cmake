# One run of ugeo: the arguments are the lines of CASE.args (@BINARY@ stands for the build
# folder), standard input is CASE.in when it exists, and the run happens in the cases folder so
# that @FILE arguments name files there.
# - Without CASE.err: the status must be 0, standard error empty and standard output equal to
#   CASE.out.
# - With CASE.err: the status must be 2, standard output empty (or equal to CASE.out, the
#   answers before the bad input) and standard error exactly one line that starts with
#   "error: " and matches the regular expression in CASE.err.
# - With CASE.file: its first line names a file the run must have written (@BINARY@ replaced),
#   its second a regular expression the file's text must match.
cmake_minimum_required(VERSION 3.16)
get_filename_component(dir ${CASE} DIRECTORY)
file(STRINGS ${CASE}.args args)
string(REPLACE "@BINARY@" "${BINARY}" args "${args}")
set(input)
if(EXISTS ${CASE}.in)
  set(input INPUT_FILE ${CASE}.in)
endif()
if(EXISTS ${CASE}.file)
  file(STRINGS ${CASE}.file check)
  list(GET check 0 written)
  string(REPLACE "@BINARY@" "${BINARY}" written "${written}")
  file(REMOVE ${written})
endif()
execute_process(COMMAND ${UGEO} ${args} ${input} WORKING_DIRECTORY ${dir}
                OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)

if(EXISTS ${CASE}.err)
  file(STRINGS ${CASE}.err pattern)
  if(NOT status EQUAL 2)
    message(FATAL_ERROR "status ${status}, expected 2; stderr: ${err}")
  endif()
  # Answers printed before the bad input stay printed: they are in CASE.out.
  set(expected "")
  if(EXISTS ${CASE}.out)
    file(READ ${CASE}.out expected)
  endif()
  if(NOT out STREQUAL expected)
    message(FATAL_ERROR "standard output on error\n${out}differs from the expected\n${expected}")
  endif()
  if(NOT err MATCHES "^error: [^\n]*\n$")
    message(FATAL_ERROR "standard error is not one error line:\n${err}")
  endif()
  if(NOT err MATCHES "${pattern}")
    message(FATAL_ERROR "standard error\n  ${err}does not match\n  ${pattern}")
  endif()
  return()
endif()

if(NOT status EQUAL 0)
  message(FATAL_ERROR "status ${status}, expected 0; stderr: ${err}")
endif()
if(NOT err STREQUAL "")
  message(FATAL_ERROR "standard error not empty:\n${err}")
endif()
file(READ ${CASE}.out expected)
if(NOT out STREQUAL expected)
  message(FATAL_ERROR "standard output\n${out}differs from the expected\n${expected}")
endif()
if(EXISTS ${CASE}.file)
  list(GET check 1 pattern)
  if(NOT EXISTS ${written})
    message(FATAL_ERROR "${written} was not written")
  endif()
  file(READ ${written} text)
  if(NOT text MATCHES "${pattern}")
    message(FATAL_ERROR "${written} does not match ${pattern}")
  endif()
endif()
