# Completes an installed bundle: copies Qt's modules, frameworks and plugins into it, then signs it.
#
#   bundle        the folder NAME.app
#   views         the folder with the QML files, whose imports determine the modules
#   qt_modules    the folder with Qt's QML modules
#   qmlimportscanner, macdeployqt
#   and what SignBundle.cmake needs
cmake_minimum_required(VERSION 3.25)

set(library_folder "${bundle}/Contents/PlugIns/quick")
set(module_folder "${bundle}/Contents/Resources/qml")
# Left by an earlier installation.
file(REMOVE_RECURSE "${bundle}/Contents/Frameworks" "${bundle}/Contents/PlugIns" "${module_folder}")

# macdeployqt would copy whole module trees, with all styles of controls and their libraries. So only the modules in use
# are copied here; macdeployqt then finds the libraries that they need.
execute_process(COMMAND "${qmlimportscanner}" -rootPath "${views}" -importPath "${qt_modules}"
  OUTPUT_VARIABLE imports COMMAND_ERROR_IS_FATAL ANY)
string(JSON count LENGTH "${imports}")
math(EXPR last "${count} - 1")
foreach(index RANGE ${last})
  string(JSON plugin ERROR_VARIABLE missing GET "${imports}" ${index} plugin)
  if(NOT plugin)
    continue() # our own files, and modules without a plugin
  endif()
  string(JSON source GET "${imports}" ${index} path)
  string(JSON module GET "${imports}" ${index} relativePath)
  set(library "lib${plugin}.dylib")
  # A module looks for its library in its own folder, but libraries in Resources cannot be signed.
  file(MAKE_DIRECTORY "${module_folder}/${module}" "${library_folder}")
  file(COPY_FILE "${source}/qmldir" "${module_folder}/${module}/qmldir")
  file(COPY_FILE "${source}/${library}" "${library_folder}/${library}")
  file(RELATIVE_PATH way "${module_folder}/${module}" "${library_folder}/${library}")
  file(CREATE_LINK "${way}" "${module_folder}/${module}/${library}" SYMBOLIC)
  # In some packages of Qt the files are read-only, but macdeployqt modifies these copies.
  file(CHMOD "${library_folder}/${library}"
    PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endforeach()

execute_process(COMMAND "${macdeployqt}" "${bundle}" -always-overwrite COMMAND_ERROR_IS_FATAL ANY)
# macdeployqt prints errors but exits with 0. Plugins are copied last, so their presence shows success.
if(NOT EXISTS "${bundle}/Contents/PlugIns/platforms/libqcocoa.dylib")
  message(FATAL_ERROR "${macdeployqt} did not complete ${bundle}")
endif()

# Most versions of macdeployqt modify libraries without signing them again, and Apple Silicon does not run unsigned
# code. Signing everything again also sets the program's identifier.
include("${CMAKE_CURRENT_LIST_DIR}/SignBundle.cmake")
