# SPDX-License-Identifier: GPL-3.0-or-later

# Run as `cmake -D... -P CheckTemplate.cmake` (translations/CMakeLists.txt registers it as a
# test): updates a copy of the template from the sources in SOURCE_LIST (one path a line), with
# lupdate and the options that update_translations uses, and fails when the copy's texts differ
# from the template's. Only the texts and their contexts are compared, so that another Qt's
# lupdate, which may write the same texts a little differently, agrees with a template it did
# not write.

foreach(_variable LUPDATE SOURCE_LIST INCLUDE_DIR TEMPLATE WORK_DIR)
    if(NOT DEFINED ${_variable})
        message(FATAL_ERROR "CheckTemplate.cmake needs -D${_variable}=...")
    endif()
endforeach()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
get_filename_component(_name ${TEMPLATE} NAME)
set(_copy ${WORK_DIR}/${_name})
file(COPY_FILE ${TEMPLATE} ${_copy})

file(STRINGS ${SOURCE_LIST} _sources)
execute_process(COMMAND ${LUPDATE} ${OPTIONS} -I ${INCLUDE_DIR} ${_sources} -ts ${_copy}
    RESULT_VARIABLE _status)
if(NOT _status EQUAL 0)
    message(FATAL_ERROR "lupdate failed on the sources")
endif()

# Each context's name and each message's text, comment and plural mark, in order.
function(texts_of file out)
    file(READ ${file} _content)
    string(REGEX MATCHALL
        "<name>[^<]*</name>|<message( numerus=\"yes\")?>|<source>[^<]*</source>|<comment>[^<]*</comment>|<extracomment>[^<]*</extracomment>"
        _texts "${_content}")
    set(${out} "${_texts}" PARENT_SCOPE)
endfunction()

texts_of(${TEMPLATE} _expected)
texts_of(${_copy} _actual)
if(NOT _expected STREQUAL _actual)
    set(_missing ${_actual})
    list(REMOVE_ITEM _missing ${_expected})
    set(_gone ${_expected})
    list(REMOVE_ITEM _gone ${_actual})
    list(JOIN _missing "\n  " _missing)
    list(JOIN _gone "\n  " _gone)
    message(FATAL_ERROR "translations/${_name} is out of date with the sources.\n"
        "Texts of the sources that it lacks:\n  ${_missing}\n"
        "Texts that it holds and the sources no longer have:\n  ${_gone}\n"
        "Bring it up to date with `cmake --build build --target update_translations`.")
endif()
message(STATUS "translations/${_name} holds every text of the sources")
