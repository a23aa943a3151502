# Finds omniORB 4 through pkg-config: the target OmniOrb::orb (ORB, threads, dynamic part) and the program
# OmniOrb_IDL (omniidl).
find_package(PkgConfig REQUIRED)
pkg_check_modules(OmniOrb QUIET IMPORTED_TARGET GLOBAL omniORB4 omnithread4 omniDynamic4)
find_program(OmniOrb_IDL omniidl)
set(OmniOrb_VERSION ${OmniOrb_omniORB4_VERSION})

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(OmniOrb REQUIRED_VARS OmniOrb_LINK_LIBRARIES VERSION_VAR OmniOrb_VERSION
    REASON_FAILURE_MESSAGE "Debian: apt-get install libomniorb4-dev omniidl")

if(OmniOrb_FOUND AND NOT TARGET OmniOrb::orb)
    add_library(OmniOrb::orb INTERFACE IMPORTED GLOBAL)
    target_link_libraries(OmniOrb::orb INTERFACE PkgConfig::OmniOrb)
endif()
