# One folder of src/ is one static library. What a module declares under USES is what it may include
# (and, through it, whatever those modules may include); a test for each module holds it to that.
#
#   ortu_module(catalogue SOURCES OTApp.cpp … QT Core Gui USES icons platform)
#   ortu_test(catalogue OTAppTest SOURCES OTAppTest.cpp)
#   ortu_bench(FolderWalkBench USES catalogue)

# QT_DISABLE_DEPRECATED_BEFORE hides what Qt up to 6.4 has deprecated; later versions call it
# QT_DISABLE_DEPRECATED_UP_TO and take either.
add_library(ortu_settings INTERFACE)
target_include_directories(ortu_settings INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_definitions(ortu_settings INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_compile_options(ortu_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${ORTU_WARNINGS_ARE_ERRORS}>:-Werror>)
if(ORTU_SANITIZE)
  target_compile_options(ortu_settings INTERFACE
    -fsanitize=${ORTU_SANITIZE} -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(ortu_settings INTERFACE -fsanitize=${ORTU_SANITIZE})
endif()

# For the few sources that name the version, so that a new one compiles little anew. The stamp is what the
# program and the modules that it loads have in common: the version, and the interfaces between the two.
file(GLOB INTERFACES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/platform/*.h)
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${INTERFACES})
set(INTERFACES_TEXT "")
foreach(INTERFACE_FILE IN LISTS INTERFACES)
  file(READ ${INTERFACE_FILE} TEXT)
  string(APPEND INTERFACES_TEXT "${TEXT}")
endforeach()
string(SHA1 INTERFACES_HASH "${INTERFACES_TEXT}")
string(SUBSTRING ${INTERFACES_HASH} 0 12 INTERFACES_HASH)
set(ORTU_MODULE_STAMP ${PROJECT_VERSION}-${INTERFACES_HASH})
add_library(ortu_version INTERFACE)
target_compile_definitions(ortu_version INTERFACE
  ORTU_VERSION="${PROJECT_VERSION}" ORTU_MODULE_STAMP="${ORTU_MODULE_STAMP}")

function(ortu_target_name FOLDER OUT)
  string(REPLACE "/" "_" TARGET "ortu_${FOLDER}")
  set(${OUT} ${TARGET} PARENT_SCOPE)
endfunction()

function(ortu_qt_libraries OUT)
  list(TRANSFORM ARGN PREPEND "Qt6::")
  set(${OUT} ${ARGN} PARENT_SCOPE)
endfunction()

# Modules are declared lowest first, so the closure of each is known when the next one asks for it.
function(ortu_module FOLDER)
  cmake_parse_arguments(M "" "" "SOURCES;QT;USES;LIBRARIES" ${ARGN})
  ortu_target_name(${FOLDER} TARGET)
  add_library(${TARGET} STATIC ${M_SOURCES})
  ortu_qt_libraries(QT_LIBRARIES ${M_QT})
  target_link_libraries(${TARGET} PUBLIC ortu_settings ${QT_LIBRARIES} PRIVATE ${M_LIBRARIES})
  set(MAY_INCLUDE ${FOLDER})
  foreach(USED IN LISTS M_USES)
    ortu_target_name(${USED} USED_TARGET)
    target_link_libraries(${TARGET} PUBLIC ${USED_TARGET})
    get_target_property(CLOSURE ${USED_TARGET} ORTU_MAY_INCLUDE)
    list(APPEND MAY_INCLUDE ${CLOSURE})
  endforeach()
  list(REMOVE_DUPLICATES MAY_INCLUDE)
  set_target_properties(${TARGET} PROPERTIES ORTU_MAY_INCLUDE "${MAY_INCLUDE}")
  if(BUILD_TESTING)
    string(REPLACE "/" "." TEST_NAME "layering.${FOLDER}")
    add_test(NAME ${TEST_NAME}
      COMMAND bash ${PROJECT_SOURCE_DIR}/tests/house/layering.sh
        ${PROJECT_SOURCE_DIR}/src ${FOLDER} ${MAY_INCLUDE})
  endif()
endfunction()

# A part of the program that is loaded when it is first needed, for the sake of the Qt modules it
# brings along. ProgramModule finds it, and refuses one with another stamp. CPack takes what lies nearer
# to lib for libraries that ldconfig has to know.
set(ORTU_LOADED_IN ${CMAKE_INSTALL_LIBDIR}/ortu/modules)
function(ortu_loaded_module NAME)
  cmake_parse_arguments(M "" "" "SOURCES;QT" ${ARGN})
  add_library(${NAME} MODULE
    ${M_SOURCES} ${PROJECT_SOURCE_DIR}/src/platform/freedesktop/base/ModuleStamp.cpp)
  ortu_qt_libraries(QT_LIBRARIES ${M_QT})
  target_link_libraries(${NAME} PRIVATE ortu_settings ortu_version ${QT_LIBRARIES})
  set_target_properties(${NAME} PROPERTIES
    PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  install(TARGETS ${NAME} LIBRARY DESTINATION ${ORTU_LOADED_IN})
endfunction()

# Text has the same size on every machine.
set(ORTU_TEST_FONTS FONTCONFIG_FILE=${PROJECT_BINARY_DIR}/tests/fonts.conf)

# A test program of one module. It runs on the offscreen display, with one font.
function(ortu_test FOLDER NAME)
  cmake_parse_arguments(T "" "TIMEOUT" "SOURCES;USES;QT;LIBRARIES" ${ARGN})
  add_executable(${NAME} ${T_SOURCES})
  ortu_qt_libraries(QT_LIBRARIES Test ${T_QT})
  target_include_directories(${NAME} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  foreach(USED IN ITEMS ${FOLDER} LISTS T_USES)
    ortu_target_name(${USED} USED_TARGET)
    target_link_libraries(${NAME} PRIVATE ${USED_TARGET})
  endforeach()
  target_link_libraries(${NAME} PRIVATE ortu_testing ${QT_LIBRARIES} ${T_LIBRARIES})
  add_test(NAME ${FOLDER}.${NAME} COMMAND ${NAME})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  set_tests_properties(${FOLDER}.${NAME} PROPERTIES TIMEOUT ${T_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${ORTU_TEST_FONTS};LANG=C.UTF-8;LC_ALL=C.UTF-8")
endfunction()

function(ortu_bench NAME)
  cmake_parse_arguments(B "" "" "USES;QT" ${ARGN})
  add_executable(${NAME} ${NAME}.cpp)
  ortu_qt_libraries(QT_LIBRARIES ${B_QT})
  foreach(USED IN LISTS B_USES)
    ortu_target_name(${USED} USED_TARGET)
    target_link_libraries(${NAME} PRIVATE ${USED_TARGET})
  endforeach()
  target_link_libraries(${NAME} PRIVATE ${QT_LIBRARIES} benchmark::benchmark)
endfunction()
