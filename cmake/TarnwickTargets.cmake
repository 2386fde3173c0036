# Shared compile settings and the helpers that every subsystem and test uses.

add_library(tarnwick_settings INTERFACE)
target_compile_features(tarnwick_settings INTERFACE cxx_std_20)
target_compile_definitions(tarnwick_settings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER)
if(MSVC)
    target_compile_options(tarnwick_settings INTERFACE /W4 /permissive-)
else()
    target_compile_options(tarnwick_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow)
endif()
if(TARNWICK_SANITIZE)
    target_compile_options(tarnwick_settings INTERFACE
        -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(tarnwick_settings INTERFACE -fsanitize=address,undefined)
endif()

# tarnwick_library(NAME SOURCES ... [PUBLIC_LIBS ...]): one static library per subsystem.
function(tarnwick_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_LIBS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC tarnwick_settings ${ARG_PUBLIC_LIBS})
endfunction()

# tarnwick_test(NAME SOURCES ... LIBS ... LABELS ... [RESOURCE_LOCK name]): one Qt Test executable.
function(tarnwick_test name)
    cmake_parse_arguments(ARG "" "RESOURCE_LOCK;TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE tarnwick_settings Qt6::Test ${ARG_LIBS})
    add_test(NAME ${name} COMMAND ${name})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    # Every test has a settings store of its own and never touches the user's, on any platform,
    # and reads English whatever the system speaks.
    set_tests_properties(${name} PROPERTIES
        LABELS "${ARG_LABELS}"
        TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TARNWICK_LANGUAGE=en_US;TARNWICK_SETTINGS_FILE=${CMAKE_BINARY_DIR}/test-settings/${name}.ini;TARNWICK_BIN_DIR=${CMAKE_BINARY_DIR}/bin")
    if(ARG_RESOURCE_LOCK)
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK ${ARG_RESOURCE_LOCK})
    endif()
endfunction()
