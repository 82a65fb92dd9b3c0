# Installs the Python module with pip into a throwaway virtual environment,
# as the README tells a user to, and imports it from there. The sources are
# copied first, as a fresh clone would have them, so the in-tree build that
# pip makes leaves the work tree alone. Nothing comes from a package index.
# Set: SOURCE_DIR, WORK_DIR, PYTHON (the system interpreter).

include(${CMAKE_CURRENT_LIST_DIR}/RunChecked.cmake)

set(clone ${WORK_DIR}/source)
set(venv ${WORK_DIR}/venv)
file(REMOVE_RECURSE ${WORK_DIR})
string(REGEX REPLACE "([][+.*()^$?|\\])" "\\\\\\1" source "${SOURCE_DIR}")
file(COPY ${SOURCE_DIR}/ DESTINATION ${clone}
     PATTERN .git EXCLUDE
     REGEX "^${source}/build[^/]*$" EXCLUDE
     REGEX "^${source}/python/build$" EXCLUDE
     REGEX "^${source}/python/[^/]*\\.egg-info$" EXCLUDE)

run_checked(${PYTHON} -m venv --system-site-packages ${venv})
# The module must come from the environment, not from a build tree.
set(python ${CMAKE_COMMAND} -E env --unset=PYTHONPATH --unset=CMAKE_ARGS ${venv}/bin/python)
run_checked(${python} -m pip install --no-build-isolation --no-index ${clone}/python)
message(STATUS "${run_output}")
file(WRITE ${WORK_DIR}/check/check.py [[
import busdecode
print(busdecode.__file__)
cbw = bytes.fromhex("55534243 01000000 24000000 80 00 06 12000000 24000000 00000000 00000000")
print(busdecode.decode("bot", cbw)["request_name"])
]])
run_checked(${python} ${WORK_DIR}/check/check.py)
string(FIND "${run_output}" "${venv}/lib/" at)
if(NOT at EQUAL 0 OR NOT run_output MATCHES "/site-packages/busdecode[^/\n]*\\.so\nCommand Block Wrapper\n$")
  message(FATAL_ERROR "the module did not come from the environment or did not decode:\n${run_output}")
endif()
