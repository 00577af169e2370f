# cmake --build --preset win32 --target packages: what administrators get (see packaging/make), in the folder
# "packages" of the build folder.
if(NOT WIN32)
    return()
endif()

# The bill of materials lists what is in the map files of the linker.
foreach(target vh_tray expat)
    target_link_options(${target} PRIVATE -Wl,-Map=${CMAKE_BINARY_DIR}/${target}.map)
endforeach()

set(make_package ${CMAKE_SOURCE_DIR}/packaging/make --version ${PROJECT_VERSION}
    --compiler ${CMAKE_CXX_COMPILER} --expat-source ${expat_source}
    --program $<TARGET_FILE:vh_tray> ${CMAKE_BINARY_DIR}/vh_tray.map
    --library $<TARGET_FILE:expat> ${CMAKE_BINARY_DIR}/expat.map)
add_custom_target(packages COMMAND ${make_package} ${CMAKE_BINARY_DIR}/packages
    DEPENDS vh_tray expat
    COMMENT "Making the packages for administrators" VERBATIM)
