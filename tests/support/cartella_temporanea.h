// A fresh folder under the system's temporary folder, removed with everything in it at the end.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace test {

class CartellaTemporanea {
public:
    CartellaTemporanea() {
        std::string modello = (std::filesystem::temp_directory_path() / "brevano-prova-XXXXXX").string();
        percorso_ = ::mkdtemp(modello.data());
    }
    ~CartellaTemporanea() {
        std::error_code ec;
        std::filesystem::remove_all(percorso_, ec);
    }
    CartellaTemporanea(const CartellaTemporanea&) = delete;
    CartellaTemporanea& operator=(const CartellaTemporanea&) = delete;

    const std::string& percorso() const { return percorso_; }
    std::string operator/(const std::string& nome) const { return percorso_ + "/" + nome; }

private:
    std::string percorso_;
};

}  // namespace test
