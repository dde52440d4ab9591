# Several releases of Qt ask their users to link the framework AGL, which nothing needs and the SDK of Xcode 26 lacks.

# kelvinbar_remove_agl(<target>): takes the framework out of what users of the target link.
function(kelvinbar_remove_agl target)
  get_target_property(libraries ${target} INTERFACE_LINK_LIBRARIES)
  if(NOT libraries)
    return()
  endif()
  list(FILTER libraries EXCLUDE REGEX "(^-framework AGL|/AGL\\.framework(/.*)?)$")
  set_target_properties(${target} PROPERTIES INTERFACE_LINK_LIBRARIES "${libraries}")
endfunction()
