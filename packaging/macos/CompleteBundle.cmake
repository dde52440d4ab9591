# Completes an installed bundle: Qt's modules, frameworks and plugins go into it, then it is signed.
#
#   bundle        the folder NAME.app
#   views         the folder with the QML files, whose imports say which modules are needed
#   qt_modules    the folder with Qt's QML modules
#   identity      who signs, "-" for no one
#   qmlimportscanner, macdeployqt, codesign
cmake_minimum_required(VERSION 3.25)

set(library_folder "${bundle}/Contents/PlugIns/quick")
set(module_folder "${bundle}/Contents/Resources/qml")
# What an earlier installation left.
file(REMOVE_RECURSE "${bundle}/Contents/Frameworks" "${bundle}/Contents/PlugIns" "${module_folder}")

# macdeployqt would take whole trees of modules, all styles of controls and their libraries among them. These are the
# modules that are used; it finds the libraries that these need.
execute_process(COMMAND "${qmlimportscanner}" -rootPath "${views}" -importPath "${qt_modules}"
  OUTPUT_VARIABLE imports COMMAND_ERROR_IS_FATAL ANY)
string(JSON count LENGTH "${imports}")
math(EXPR last "${count} - 1")
foreach(index RANGE ${last})
  string(JSON plugin ERROR_VARIABLE missing GET "${imports}" ${index} plugin)
  if(NOT plugin)
    continue() # files of the program, and modules that are part of a library
  endif()
  string(JSON source GET "${imports}" ${index} path)
  string(JSON module GET "${imports}" ${index} relativePath)
  set(library "lib${plugin}.dylib")
  # A module looks for its library beside itself, but libraries among resources cannot be signed.
  file(MAKE_DIRECTORY "${module_folder}/${module}" "${library_folder}")
  file(COPY_FILE "${source}/qmldir" "${module_folder}/${module}/qmldir")
  file(COPY_FILE "${source}/${library}" "${library_folder}/${library}")
  file(RELATIVE_PATH way "${module_folder}/${module}" "${library_folder}/${library}")
  file(CREATE_LINK "${way}" "${module_folder}/${module}/${library}" SYMBOLIC)
  # Some packages of Qt are read-only, and macdeployqt changes what it finds here.
  file(CHMOD "${library_folder}/${library}"
    PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endforeach()

execute_process(COMMAND "${macdeployqt}" "${bundle}" -always-overwrite COMMAND_ERROR_IS_FATAL ANY)
# It names its failures, but ends as if there were none. Plugins come last.
if(NOT EXISTS "${bundle}/Contents/PlugIns/platforms/libqcocoa.dylib")
  message(FATAL_ERROR "${macdeployqt} did not complete ${bundle}")
endif()

# Most versions of macdeployqt leave libraries whose signatures they broke by changing them, and processors of Apple run
# nothing that is not signed. Signing everything anew also names the program by its identifier.
execute_process(COMMAND "${codesign}" --force --deep --sign "${identity}" "${bundle}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${codesign}" --verify --deep --strict "${bundle}" COMMAND_ERROR_IS_FATAL ANY)
