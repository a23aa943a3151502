# Finds FFTW in single precision through pkg-config, since Debian's package has nothing for CMake:
# the target Fftw3f::fftw3f.
find_package(PkgConfig REQUIRED)
pkg_check_modules(Fftw3f QUIET IMPORTED_TARGET GLOBAL fftw3f)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Fftw3f REQUIRED_VARS Fftw3f_LINK_LIBRARIES VERSION_VAR Fftw3f_VERSION
    REASON_FAILURE_MESSAGE "Debian: apt-get install libfftw3-dev")

if(Fftw3f_FOUND AND NOT TARGET Fftw3f::fftw3f)
    add_library(Fftw3f::fftw3f INTERFACE IMPORTED GLOBAL)
    target_link_libraries(Fftw3f::fftw3f INTERFACE PkgConfig::Fftw3f)
endif()
