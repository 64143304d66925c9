# What a release build stamps into the program: the version it reports and compares
# with the update server's reply, the update server it asks, and where an installed
# copy finds its manual. A company that runs its own update server sets the host and
# port here; a build of its own asks a server on this machine.
include(GNUInstallDirs)

set(LARK_VERSION "1.0.1.5" CACHE STRING
    "Version the program reports and compares with the update server's: four numbers 0-255")
set(LARK_UPDATE_HOST "127.0.0.1" CACHE STRING "Host name or address of the update server")
set(LARK_UPDATE_PORT "8088" CACHE STRING "TCP port of the update server")

string(REPLACE "." ";" _lark_version_parts "${LARK_VERSION}")
list(LENGTH _lark_version_parts _lark_version_count)
if(NOT _lark_version_count EQUAL 4)
    message(FATAL_ERROR "LARK_VERSION must be four dotted numbers, such as 1.0.1.6, not \"${LARK_VERSION}\"")
endif()
set(LARK_VERSION_VALUE 0)
foreach(_part IN LISTS _lark_version_parts)
    if(NOT _part MATCHES "^[0-9]+$" OR _part GREATER 255)
        message(FATAL_ERROR "LARK_VERSION \"${LARK_VERSION}\": each number is one byte, 0 to 255")
    endif()
    math(EXPR LARK_VERSION_VALUE "(${LARK_VERSION_VALUE} << 8) | ${_part}" OUTPUT_FORMAT HEXADECIMAL)
endforeach()
list(GET _lark_version_parts 0 LARK_VERSION_1)
list(GET _lark_version_parts 1 LARK_VERSION_2)
list(GET _lark_version_parts 2 LARK_VERSION_3)
list(GET _lark_version_parts 3 LARK_VERSION_4)
if(NOT LARK_UPDATE_PORT MATCHES "^[0-9]+$" OR LARK_UPDATE_PORT LESS 1 OR LARK_UPDATE_PORT GREATER 65535)
    message(FATAL_ERROR "LARK_UPDATE_PORT must be a TCP port, 1 to 65535, not \"${LARK_UPDATE_PORT}\"")
endif()
if(LARK_UPDATE_HOST STREQUAL "" OR LARK_UPDATE_HOST MATCHES "[/: \"]")
    message(FATAL_ERROR "LARK_UPDATE_HOST must be a bare host name or IPv4 address, not \"${LARK_UPDATE_HOST}\"")
endif()

# the package's name for its documentation folder, lower case as Debian wants it
set(LARK_DOC_NAME larktools)
set(LARK_INSTALL_FULL_DOCDIR ${CMAKE_INSTALL_FULL_DATAROOTDIR}/doc/${LARK_DOC_NAME})

configure_file(${CMAKE_CURRENT_LIST_DIR}/LarkRelease.h.in ${PROJECT_BINARY_DIR}/generated/LarkRelease.h @ONLY)
# only the few files that include the header are rebuilt when a stamp changes
target_include_directories(larkbase PUBLIC ${PROJECT_BINARY_DIR}/generated)
if(TARGET larkupdaterules)
    target_include_directories(larkupdaterules PUBLIC ${PROJECT_BINARY_DIR}/generated)
endif()
