# The host's headers, from a folder that has nothing else of the host in it (build.sh makes it).
add_library(CLI11::CLI11 INTERFACE IMPORTED)
set_target_properties(CLI11::CLI11 PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${WINDOWS_HEADERS}")
