# The host's headers, from a folder that has nothing else of the host in it (build.sh makes it).
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
set_target_properties(nlohmann_json::nlohmann_json PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${WINDOWS_HEADERS}")
