# What every library, test and program of the project shares: flags, precompiled headers, exports.

add_library(zelFlags INTERFACE)
target_compile_options(zelFlags INTERFACE
    -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Wcast-qual
    -fno-semantic-interposition # nothing replaces a function of a library: they may be inlined
    $<$<BOOL:${ZEL_WERROR}>:-Werror>)
target_compile_definitions(zelFlags INTERFACE
    QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# zel_add_library(<target> OUTPUT <name> ALIAS <name> HEADERS ... SOURCES ... [PUBLIC ...] [PRIVATE ...])
# A shared library that hides what it does not export. Headers are included by their path from the
# project's root ("zelDb/ZelDb.h"), in the tree as after an installation.
function(zel_add_library target)
    cmake_parse_arguments(ARG "" "OUTPUT;ALIAS" "HEADERS;SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${target} SHARED ${ARG_SOURCES})
    add_library(ZelModelSupport::${ARG_ALIAS} ALIAS ${target})
    string(TOUPPER ${target} upper)
    set(export_header "${PROJECT_BINARY_DIR}/generated/${target}/${ARG_OUTPUT}Export.h")
    generate_export_header(${target} BASE_NAME ${upper} EXPORT_FILE_NAME "${export_header}")
    # Two sets, since the generated one may lie inside the project's root.
    target_sources(${target}
        PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${ARG_HEADERS}
        PUBLIC FILE_SET generated TYPE HEADERS
            BASE_DIRS "${PROJECT_BINARY_DIR}/generated" FILES "${export_header}")
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${ARG_OUTPUT}
        EXPORT_NAME ${ARG_ALIAS}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN"
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} $<BUILD_INTERFACE:zelFlags>)
    install(TARGETS ${target} EXPORT ZelModelSupportTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zel
        FILE_SET generated DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zel)
endfunction()

# zel_add_test(<executable> SOURCES ... [LINK ...]): one executable per room. Each ZEL_TEST class in it
# becomes a ctest entry of its own, named room/class.
function(zel_add_test target)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${target} ${ARG_SOURCES})
    target_link_libraries(${target} PRIVATE zelTestSupport ${ARG_LINK} zelFlags)
    foreach(source IN LISTS ARG_SOURCES)
        if(source MATCHES "/?tst_([A-Za-z0-9]+)\\.cpp$")
            set(name ${CMAKE_MATCH_1})
            add_test(NAME ${target}/${name} COMMAND ${target} --class tst_${name})
            set_tests_properties(${target}/${name} PROPERTIES
                ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_LOGGING_RULES=qt.qpa.*=false"
                TIMEOUT 600)
        endif()
    endforeach()
endfunction()

function(zel_install_package)
    set(dir "${CMAKE_INSTALL_LIBDIR}/cmake/ZelModelSupport")
    configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/ZelModelSupportConfig.cmake.in"
        "${PROJECT_BINARY_DIR}/ZelModelSupportConfig.cmake" INSTALL_DESTINATION "${dir}")
    write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZelModelSupportConfigVersion.cmake"
        COMPATIBILITY SameMinorVersion)
    install(EXPORT ZelModelSupportTargets NAMESPACE ZelModelSupport:: DESTINATION "${dir}")
    install(FILES "${PROJECT_BINARY_DIR}/ZelModelSupportConfig.cmake"
        "${PROJECT_BINARY_DIR}/ZelModelSupportConfigVersion.cmake" DESTINATION "${dir}")
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/models"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zelmodelsupport")
endfunction()
