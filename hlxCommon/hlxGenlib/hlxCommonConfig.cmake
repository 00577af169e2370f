# hlxCommon::hlxGenlib, the agent's common library. Whoever includes ExpatImpl.h or hlxParseConf.h has
# expat.h on the include path, and LIBEXPAT.dll beside the program or in the agent's directory.
include(CMakeFindDependencyMacro)
if(NOT WIN32)
    find_dependency(Threads)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/hlxCommonTargets.cmake)
