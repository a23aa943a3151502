#include "installation/samplesignal/samplerecording.h"

#include "programs/seconds.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <iostream>

int main(int argc, char **argv)
{
    std::string base;
    double seconds = 1;
    quint32 seed = 1;
    CLI::App app("Writes a recording of 20 MHz with two signals over noise, as a SigMF pair.", "korve-samplesignal");
    app.add_option("BASE", base, "The names of both files, without .sigmf-meta and .sigmf-data")->required();
    app.add_option("--seconds", seconds, "How long it is, from 0.001 to 3600; each second takes 80 MB")
        ->capture_default_str()
        ->check([](const std::string &word) { return programs::complaintAboutSeconds(word, 0.001, 3600); });
    app.add_option("--seed", seed, "Of the noise; the same one gives the same bytes")->capture_default_str();
    app.set_version_flag("--version", "korve-samplesignal " KORVE_VERSION, "Print the version and end");
    try {
        app.parse(argc, argv);
        const std::chrono::milliseconds duration(std::llround(seconds * 1000));
        installation::samplesignal::writeSampleRecording(QString::fromStdString(base), duration, seed);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : 1; // the parser has a number of its own for each mistake
    } catch (const std::exception &error) {
        std::cerr << "korve-samplesignal: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}
