# SPDX-License-Identifier: MIT
# NUMPY_PYTHON: of the Pythons of this system, the first that has NumPy.
if(NOT DEFINED NUMPY_PYTHON)
  find_package(Python3 QUIET COMPONENTS Interpreter)
  set(found NUMPY_PYTHON-NOTFOUND)
  foreach(candidate ${Python3_EXECUTABLE} /usr/bin/python3)
    execute_process(COMMAND ${candidate} -c "import numpy" RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
    if(NOT found AND NOT failed)
      set(found ${candidate})
    endif()
  endforeach()
  set(NUMPY_PYTHON ${found} CACHE FILEPATH "A Python that has NumPy")
  mark_as_advanced(NUMPY_PYTHON)
endif()
