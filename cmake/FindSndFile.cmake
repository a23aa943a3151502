# Finds libsndfile through pkg-config, since Debian's package has nothing for CMake: the target SndFile::sndfile.
find_package(PkgConfig REQUIRED)
pkg_check_modules(SndFile QUIET IMPORTED_TARGET GLOBAL sndfile)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(SndFile REQUIRED_VARS SndFile_LINK_LIBRARIES VERSION_VAR SndFile_VERSION
    REASON_FAILURE_MESSAGE "Debian: apt-get install libsndfile1-dev")

if(SndFile_FOUND AND NOT TARGET SndFile::sndfile)
    add_library(SndFile::sndfile INTERFACE IMPORTED GLOBAL)
    target_link_libraries(SndFile::sndfile INTERFACE PkgConfig::SndFile)
endif()
