# The Windows program, its resources and its Windows-side tests.

enable_language(RC)
# windres takes defines and include folders but none of the C++ warning flags
# that the project sets for every language.
set(CMAKE_RC_COMPILE_OBJECT "<CMAKE_RC_COMPILER> <DEFINES> <INCLUDES> -O coff <SOURCE> <OBJECT>")

set(QUILLMERE_RESOURCES ${CMAKE_SOURCE_DIR}/resources/Quillmere.rc)
set_source_files_properties(${QUILLMERE_RESOURCES} PROPERTIES OBJECT_DEPENDS
  "${CMAKE_SOURCE_DIR}/resources/resource.h;${CMAKE_SOURCE_DIR}/resources/Dialogs.rc;${CMAKE_SOURCE_DIR}/resources/Quillmere.ico;${CMAKE_SOURCE_DIR}/resources/Quillmere.manifest")

# Static runtime: Quillmere.exe needs no DLL beside it, only the system's.
set(QUILLMERE_LINK_OPTIONS -municode -mwindows -static -static-libgcc -static-libstdc++)

add_executable(Quillmere WIN32 ${CMAKE_SOURCE_DIR}/shell/Main_win.cpp ${QUILLMERE_RESOURCES})
target_include_directories(Quillmere PRIVATE ${CMAKE_SOURCE_DIR}/resources)
target_link_libraries(Quillmere PRIVATE quillmere_core)
target_link_options(Quillmere PRIVATE ${QUILLMERE_LINK_OPTIONS})
set_target_properties(Quillmere PROPERTIES OUTPUT_NAME Quillmere)
add_dependencies(Quillmere media)

# ---- Windows-side tests: GoogleTest under Wine, against real windows, the
# real resources and Direct2D.
file(GLOB WIN_TEST_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/win/*.cpp)
add_executable(win_tests ${WIN_TEST_SOURCES} ${QUILLMERE_RESOURCES})
target_include_directories(win_tests PRIVATE ${CMAKE_SOURCE_DIR}/resources)
target_link_libraries(win_tests PRIVATE quillmere_core ${GTEST_TARGETS} version)
target_link_options(win_tests PRIVATE -static -static-libgcc -static-libstdc++)
add_dependencies(win_tests media)
add_test(NAME win_tests COMMAND win_tests)
set_tests_properties(win_tests PROPERTIES TIMEOUT 300)

# The program depends on system DLLs alone.
add_test(NAME quillmere_system_dlls_only
  COMMAND bash ${CMAKE_SOURCE_DIR}/tests/win/system_dlls_only.sh $<TARGET_FILE:Quillmere>)

# ---- User journeys: Quillmere.exe under Wine in Xvfb, driven with xdotool.
# Each starts its own Xvfb unless DISPLAY is set; all share the build's Wine
# prefix, so they run one at a time.
file(GLOB E2E_SCRIPTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/e2e/*.sh)
list(FILTER E2E_SCRIPTS EXCLUDE REGEX "/lib\\.sh$")
foreach(script ${E2E_SCRIPTS})
  get_filename_component(name ${script} NAME_WE)
  add_test(NAME e2e_${name} COMMAND bash ${script} $<TARGET_FILE:Quillmere>)
  set_tests_properties(e2e_${name} PROPERTIES RUN_SERIAL TRUE TIMEOUT 240
    ENVIRONMENT "QUILLMERE_OUTPUT=${CMAKE_BINARY_DIR}/e2e")
endforeach()

# ---- The package a user installs: Quillmere.exe with media/ beside it, as a
# ZIP and as an installer with a start menu entry and an uninstaller.
install(TARGETS Quillmere RUNTIME DESTINATION .)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/media/ DESTINATION media)
set(CPACK_PACKAGE_NAME Quillmere)
set(CPACK_PACKAGE_VENDOR Brambleworks)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Three-dimensional vector paths for Cinderlane shows")
set(CPACK_PACKAGE_FILE_NAME Quillmere-${PROJECT_VERSION})
set(CPACK_PACKAGE_INSTALL_DIRECTORY Quillmere)
set(CPACK_PACKAGE_EXECUTABLES Quillmere Quillmere)
set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_NSIS_DISPLAY_NAME "Quillmere ${PROJECT_VERSION}")
set(CPACK_NSIS_PACKAGE_NAME Quillmere)
set(CPACK_NSIS_INSTALLED_ICON_NAME Quillmere.exe)
set(CPACK_NSIS_MUI_ICON ${CMAKE_SOURCE_DIR}/resources/Quillmere.ico)
set(CPACK_NSIS_MUI_UNIICON ${CMAKE_SOURCE_DIR}/resources/Quillmere.ico)
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
set(CPACK_NSIS_EXECUTABLES_DIRECTORY .)
set(CPACK_NSIS_MUI_FINISHPAGE_RUN Quillmere.exe)
include(CPack)
add_test(NAME package_contents
  COMMAND bash ${CMAKE_SOURCE_DIR}/tests/package/check_package.sh ${CMAKE_BINARY_DIR}
          ${CMAKE_BINARY_DIR}/package-check)
set_tests_properties(package_contents PROPERTIES TIMEOUT 600)
# ---- A stand-in potrace.exe for the external tracer's Windows-side test: it
# records how it was started and writes a known EPS file.
add_executable(potrace_standin ${CMAKE_SOURCE_DIR}/tests/tools/potrace_standin.cpp)
set_target_properties(potrace_standin PROPERTIES OUTPUT_NAME potrace
  RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/standin)
target_link_options(potrace_standin PRIVATE -municode -static -static-libgcc -static-libstdc++)
add_dependencies(win_tests potrace_standin)
target_compile_definitions(win_tests PRIVATE
  POTRACE_STANDIN="$<TARGET_FILE:potrace_standin>"
  TRACER_PICTURES="${CMAKE_SOURCE_DIR}/tests/data/tracer")
# The unpacked ZIP used as a new user would: its sample ride saved with every
# ride show and trees.
add_test(NAME package_installed_ride
  COMMAND bash ${CMAKE_SOURCE_DIR}/tests/package/installed_ride.sh
          ${CMAKE_BINARY_DIR}/package-check/unpacked/Quillmere-5.2.0.0/Quillmere.exe)
set_tests_properties(package_installed_ride PROPERTIES DEPENDS package_contents RUN_SERIAL TRUE
  TIMEOUT 300 ENVIRONMENT "QUILLMERE_WINEPREFIX=${CMAKE_BINARY_DIR}/wineprefix;QUILLMERE_OUTPUT=${CMAKE_BINARY_DIR}/e2e")
