# What makes a fault in a released program end it instead of opening it: for optimised builds alone, since these options
# slow the others down and hide the sanitizers' findings. An option that a compiler lacks is left out, and said.
# HardenedProgram.cmake reads the programs that came out of it.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)

set(SPECTRANE_HARDENED_CONFIGS Release RelWithDebInfo MinSizeRel)
set(SPECTRANE_HARDENED_FLAGS "")
set(hardened "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")

# harden_compile FLAG: for all sources, when the compiler has it and a program built with it links.
function(harden_compile flag)
  string(MAKE_C_IDENTIFIER "SPECTRANE_HAS${flag}" known)
  set(CMAKE_REQUIRED_FLAGS "-Werror ${flag}")
  set(CMAKE_REQUIRED_LINK_OPTIONS ${flag})
  check_cxx_source_compiles("#include <string>\nint main(int n, char** v) { return int(std::string(v[0]).size()) - n; }" ${known})
  if(${known})
    target_compile_options(spectrane_rules INTERFACE $<${hardened}:${flag}>)
    # Some libraries of the compiler's are only linked in when it is asked for them.
    target_link_options(spectrane_rules INTERFACE $<${hardened}:${flag}>)
    set(SPECTRANE_HARDENED_FLAGS ${SPECTRANE_HARDENED_FLAGS} ${flag} PARENT_SCOPE)
  else()
    message(STATUS "Hardening without ${flag}: this compiler does not have it")
  endif()
endfunction()

# harden_link FLAG: for all programs, when the linker has it.
function(harden_link flag)
  string(MAKE_C_IDENTIFIER "SPECTRANE_LINKS${flag}" known)
  check_linker_flag(CXX "${flag}" ${known})
  if(${known})
    target_link_options(spectrane_rules INTERFACE $<${hardened}:${flag}>)
  endif()
endfunction()

if(MSVC)
  target_compile_options(spectrane_rules INTERFACE $<${hardened}:/sdl> $<${hardened}:/guard:cf>)
  target_link_options(spectrane_rules INTERFACE $<${hardened}:/guard:cf> $<${hardened}:/DYNAMICBASE> $<${hardened}:/NXCOMPAT>
                      $<${hardened}:/HIGHENTROPYVA>)
else()
  harden_compile(-fstack-protector-strong)
  # On Windows every page of a frame is touched in any case, and GCC 12 for it breaks off with an internal error at this
  # option (i386_pe_seh_unwind_emit).
  if(NOT WIN32)
    harden_compile(-fstack-clash-protection)
  endif()
  harden_compile(-fcf-protection=full)
  # Level 3 measures blocks whose size is known only at run time. Some distributions' compilers set a level themselves.
  target_compile_options(spectrane_rules INTERFACE $<${hardened}:-U_FORTIFY_SOURCE>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 12)
    target_compile_options(spectrane_rules INTERFACE $<${hardened}:-D_FORTIFY_SOURCE=2>)
  else()
    target_compile_options(spectrane_rules INTERFACE $<${hardened}:-D_FORTIFY_SOURCE=3>)
  endif()
  target_compile_definitions(spectrane_rules INTERFACE $<${hardened}:_GLIBCXX_ASSERTIONS>)

  # The switches of each source go into the program, for HardenedProgram.cmake to read.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
    target_compile_options(spectrane_rules INTERFACE $<${hardened}:-frecord-gcc-switches>)
  endif()

  if(WIN32)
    harden_link(-Wl,--dynamicbase)
    harden_link(-Wl,--nxcompat)
    harden_link(-Wl,--high-entropy-va)
  else()
    # A program that is loaded anywhere needs sources compiled for it; Qt asks for -fPIC, which is more than -fPIE.
    target_compile_options(spectrane_rules INTERFACE $<${hardened}:-fPIC>)
    target_link_options(spectrane_rules INTERFACE $<${hardened}:-pie>)
    harden_link(-Wl,-z,relro)
    harden_link(-Wl,-z,now)
    harden_link(-Wl,-z,noexecstack)
  endif()
endif()

# A released program that lacks one of them does not build.
function(spectrane_hardened_program name)
  if(CMAKE_BUILD_TYPE IN_LIST SPECTRANE_HARDENED_CONFIGS AND NOT WIN32 AND NOT APPLE AND CMAKE_READELF)
    add_custom_command(
      TARGET ${name} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${name}> -DREADELF=${CMAKE_READELF} -DCOMPILER=${CMAKE_CXX_COMPILER_ID}
              "-DFLAGS=${SPECTRANE_HARDENED_FLAGS}" -P ${CMAKE_SOURCE_DIR}/cmake/HardenedProgram.cmake
      VERBATIM)
  endif()
endfunction()
