# The `layers` test: compiles probe files with the exact compiler command of a core source and of
# a core test source (from compile_commands.json). Every forbidden header must be not found; the
# control (a core header and QtCore, QtNetwork, QtConcurrent) must compile, so that a broken
# command cannot pass for a fence.
# Run as: cmake -DCOMPILE_COMMANDS=... -DSOURCE_DIR=... -DWORK_DIR=... -P LayerProbe.cmake
cmake_minimum_required(VERSION 3.25)

set(forbidden
    "<QtWidgets/QWidget>" "<QtGui/QColor>" "<Qsci/qsciscintilla.h>" "\"ui/editor/EditorView.h\""
    "<QWidget>" "<QColor>" "<QtWebEngineWidgets/QWebEngineView>")
set(controlSource "#include \"core/document/TextCodec.h\"
#include <QString>
#include <QtConcurrent/QtConcurrentRun>
#include <QtCore/QString>
#include <QtNetwork/QNetworkRequest>

int layerProbe()
{
    return int(QString().size() + QNetworkRequest().url().port());
}
")

file(READ ${COMPILE_COMMANDS} json)
file(REAL_PATH ${SOURCE_DIR} SOURCE_DIR)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

# The first entry whose source is under `folder` (for example src/core/).
function(command_for folder out_command out_file out_output out_directory)
    string(JSON count LENGTH "${json}")
    math(EXPR last "${count} - 1")
    foreach(i RANGE ${last})
        string(JSON source GET "${json}" ${i} file)
        if(source MATCHES "^${SOURCE_DIR}/${folder}.*\\.cpp$")
            string(JSON command GET "${json}" ${i} command)
            if(NOT command MATCHES " -o ([^ ]+) ")
                message(FATAL_ERROR "no output file in: ${command}")
            endif()
            set(output "${CMAKE_MATCH_1}")
            string(JSON directory GET "${json}" ${i} directory)
            set(${out_command} "${command}" PARENT_SCOPE)
            set(${out_file} "${source}" PARENT_SCOPE)
            set(${out_output} "${output}" PARENT_SCOPE)
            set(${out_directory} "${directory}" PARENT_SCOPE)
            return()
        endif()
    endforeach()
    message(FATAL_ERROR "no compile command for a source under ${folder}")
endfunction()

set(failures 0)
foreach(folder IN ITEMS src/core/ tests/core/)
    command_for(${folder} command source output directory)
    string(MAKE_C_IDENTIFIER "${folder}" tag)
    set(probes control)
    set(index 0)
    foreach(header IN LISTS forbidden)
        math(EXPR index "${index} + 1")
        list(APPEND probes ${index})
    endforeach()
    foreach(probe IN LISTS probes)
        set(probeSource ${WORK_DIR}/${tag}${probe}.cpp)
        if(probe STREQUAL "control")
            file(WRITE ${probeSource} "${controlSource}")
        else()
            math(EXPR at "${probe} - 1")
            list(GET forbidden ${at} header)
            file(WRITE ${probeSource} "#include ${header}\n")
        endif()
        string(REPLACE "${output}" "${WORK_DIR}/${tag}${probe}.o" probeCommand "${command}")
        string(REPLACE "${source}" "${probeSource}" probeCommand "${probeCommand}")
        separate_arguments(arguments UNIX_COMMAND "${probeCommand}")
        execute_process(COMMAND ${arguments}
                        WORKING_DIRECTORY ${directory}
                        RESULT_VARIABLE result
                        OUTPUT_VARIABLE log
                        ERROR_VARIABLE log)
        if(probe STREQUAL "control")
            if(NOT result EQUAL 0)
                message("FAIL ${folder}: the control does not compile with its flags:\n${log}")
                math(EXPR failures "${failures} + 1")
            else()
                message("ok   ${folder}: the control compiles")
            endif()
        else()
            string(REGEX REPLACE "^[<\"](.*)[>\"]$" "\\1" name "${header}")
            string(FIND "${log}" "${name}: No such file or directory" notFound)
            if(result EQUAL 0 OR notFound EQUAL -1)
                message("FAIL ${folder}: #include ${header} is reachable:\n${log}")
                math(EXPR failures "${failures} + 1")
            else()
                message("ok   ${folder}: #include ${header} is not found")
            endif()
        endif()
    endforeach()
endforeach()
if(failures GREATER 0)
    message(FATAL_ERROR "${failures} layer probe(s) failed")
endif()
