// What a register hands to the print screen: the section to print, what each named sub-report of the
// chosen layout is to show, and the values of the layout's named parameters. The layout declares its
// own statements and names; what the caller gives here only overrides them, by name.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace core {

struct Parametro {
    std::string Chiave;
    std::string Nome;
    std::string Valore;
};

// Named parameters in the order they were added; a key is unique, a second Add under it replaces.
class Parametri {
public:
    Parametro& Add(const std::string& chiave, const std::string& nome, const std::string& valore);
    // nullptr when no member has that key.
    const Parametro* Item(const std::string& chiave) const;
    // The member whose Nome is nome (compared without case), as a layout asks for it.
    const Parametro* PerNome(const std::string& nome) const;
    std::size_t Count() const { return membri_.size(); }
    void Remove(const std::string& chiave);
    auto begin() const { return membri_.begin(); }
    auto end() const { return membri_.end(); }

    // For a sub-report with nothing to give: the one member of key "null", empty name and value.
    static Parametri Nessuno();

private:
    std::vector<Parametro> membri_;
};

struct SubReport {
    std::string Chiave;
    std::string Query;    // blank: the layout's own statement stays
    Parametri parametri;
};

class SubReports {
public:
    SubReport& Add(const std::string& chiave, const std::string& query, Parametri parametri = Parametri::Nessuno());
    const SubReport* Item(const std::string& chiave) const;   // compared without case
    std::size_t Count() const { return membri_.size(); }
    void Remove(const std::string& chiave);
    auto begin() const { return membri_.begin(); }
    auto end() const { return membri_.end(); }

private:
    std::vector<SubReport> membri_;
};

// One print: what frmStampa.Edita receives.
struct RichiestaStampa {
    std::string sezione;
    SubReports subReports;
    Parametri parametri;
};

// The print screen installs how a request is shown; the registers call Stampa and know no screen.
// With nothing installed the user is told that printing is not available.
void installaStampa(std::function<void(const RichiestaStampa&)> stampa);
void Stampa(const RichiestaStampa& richiesta);

}  // namespace core
