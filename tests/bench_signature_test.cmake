# Runs the quick cases of ondrel-bench and compares the signature with the committed one, the first line of the file.
#   cmake -D BENCH=<program> -D EXPECTED=<file> -P bench_signature_test.cmake
# After a change that is meant to change the search: build/release/ondrel-bench quick | tail -n 1 >the file, and then the
# same without `quick` behind it.
execute_process(COMMAND "${BENCH}" quick OUTPUT_VARIABLE output RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0 OR errors)
    message(FATAL_ERROR "ondrel-bench ended with ${result}: ${errors}")
endif()
string(REGEX MATCH "Bench: [0-9]+ [0-9a-f]+" signature "${output}")
file(STRINGS "${EXPECTED}" expected LIMIT_COUNT 1)
if(NOT signature OR NOT signature STREQUAL expected)
    message(FATAL_ERROR "The search has changed: \"${signature}\" instead of \"${expected}\"\n${output}")
endif()
message("${output}")
