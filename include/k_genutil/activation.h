#pragma once

// Finding and loading in-process servers where the system has no service of its own for it: the registry is a
// file,
//
//     $K_GENUTIL_REGISTRY, else $XDG_DATA_HOME/k_genutil/registry.ini, else
//     ~/.local/share/k_genutil/registry.ini
//
// of sections with `key=value` lines (lines beginning with ; or # are comments; names are compared without
// case):
//
//     [class {499480B3-...}]          name, progid, server (absolute path of the library), typelib, threading
//     [progid k_genutil.cProgress]    class
//     [typelib {5B83862D-...} 1.0]    name, helpstring, helpfile, server
//
// A library is loaded only if its path is absolute, names a regular file, and neither the file nor its folder
// may be written by everyone. Every failure throws ActivationError, whose text names the registry file, the
// entry and the rule.

#include "k_genutil/automation.h"
#include "k_genutil/exports.h"
#include "k_genutil/interfaces.h"
#include "k_genutil/support.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace k_genutil {

class ActivationError : public std::runtime_error {
public:
    ActivationError(HRESULT result, const std::string& text) : std::runtime_error(text), result_(result) {}
    HRESULT result() const { return result_; }

private:
    HRESULT result_;
};

/// Where the registry file is, whether or not it exists yet.
inline std::string registryPath() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    };
    if (const std::string own = variable("K_GENUTIL_REGISTRY"); !own.empty())
        return own;
    if (const std::string data = variable("XDG_DATA_HOME"); data.starts_with('/'))
        return data + "/k_genutil/registry.ini";
    if (const std::string home = variable("HOME"); home.starts_with('/'))
        return home + "/.local/share/k_genutil/registry.ini";
    throw ActivationError(
        REGDB_E_CLASSNOTREG, "no registry file: K_GENUTIL_REGISTRY, XDG_DATA_HOME and HOME are all unset");
}

namespace detail {

inline std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    return first == text.npos ? std::string_view()
                              : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace detail

/// One section of the registry text; the views look into that text.
struct RegistrySection {
    std::string_view text;   ///< all its lines, the header included
    std::string_view header; ///< what stands between the brackets; empty before the first header
    std::vector<std::pair<std::string_view, std::string_view>> values;
    std::string fault; ///< the first rule that a line of it breaks, or empty

    /// Null for a key that is not there.
    const std::string_view* find(std::string_view key) const {
        const auto found = std::find_if(
            values.begin(), values.end(), [&](const auto& entry) { return sameName(entry.first, key); });
        return found == values.end() ? nullptr : &found->second;
    }
    /// Empty for a key that is not there.
    std::string_view value(std::string_view key) const {
        const std::string_view* found = find(key);
        return found ? *found : std::string_view();
    }
};

/// Splits registry text into sections; together their texts are the whole text, byte for byte.
inline std::vector<RegistrySection> parseRegistry(std::string_view text) {
    std::vector<RegistrySection> sections(1);
    sections[0].text = text.substr(0, 0);
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t newline = text.find('\n', begin);
        const std::size_t end = newline == text.npos ? text.size() : newline + 1;
        const std::string_view line = detail::trimmed(text.substr(begin, end - begin));
        ++number;
        if (line.starts_with('[')) {
            sections.push_back({text.substr(begin, 0), {}, {}, {}});
            if (line.ends_with(']'))
                sections.back().header = detail::trimmed(line.substr(1, line.size() - 2));
        }
        RegistrySection& section = sections.back();
        section.text = text.substr(
            static_cast<std::size_t>(section.text.data() - text.data()), section.text.size() + end - begin);
        const auto fault = [&](const std::string& rule) {
            if (section.fault.empty())
                section.fault = "line " + std::to_string(number) + ": " + rule;
        };
        const std::size_t equals = line.find('=');
        if (line.find('\0') != line.npos)
            fault("text must not contain zero bytes");
        else if (line.starts_with('[') && section.header.empty())
            fault("a section name must stand between [ and ]");
        else if (line.empty() || line.starts_with(';') || line.starts_with('#') || line.starts_with('['))
            ;
        else if (equals == line.npos || equals == 0)
            fault("a line must be key=value");
        else if (section.find(detail::trimmed(line.substr(0, equals))))
            fault("a key must not be given twice");
        else
            section.values.emplace_back(
                detail::trimmed(line.substr(0, equals)), detail::trimmed(line.substr(equals + 1)));
        begin = end;
    }
    return sections;
}

/// The whole text of the registry file; empty if there is none. Refuses one that is not a regular file, that
/// everyone may write, or that is larger than a megabyte.
inline std::string readRegistry(const std::string& path) {
    const auto refuse = [&](const std::string& rule) {
        throw ActivationError(E_ACCESSDENIED, "registry " + path + ": " + rule);
    };
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0 && errno != ENOENT)
        refuse(std::string("the file must be readable: ") + std::strerror(errno));
    if (file < 0)
        return {};
    struct Closer {
        int file;
        ~Closer() { ::close(file); }
    } closer{file};
    struct stat status {};
    constexpr off_t largest = 1 << 20;
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
        refuse("the registry must be a regular file");
    if (status.st_mode & S_IWOTH)
        refuse("the registry must not be writable by everyone");
    if (status.st_size > largest)
        refuse("the registry must not be larger than 1 MB");
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t filled = 0;
    while (filled < text.size()) {
        const ssize_t count = ::read(file, text.data() + filled, text.size() - filled);
        if (count < 0 && errno != EINTR)
            refuse(std::string("the file must be readable: ") + std::strerror(errno));
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    text.resize(filled);
    return text;
}

/// The rule that a server's library path breaks, or empty text if it may be loaded.
inline std::string libraryFault(const std::string& path) {
    if (!path.starts_with('/'))
        return "the library path must be absolute";
    char real[PATH_MAX];
    if (!::realpath(path.c_str(), real))
        return std::string("the library must exist: ") + std::strerror(errno);
    struct stat status {};
    if (::stat(real, &status) != 0 || !S_ISREG(status.st_mode))
        return "the library must be a regular file";
    if (status.st_mode & S_IWOTH)
        return "the library must not be writable by everyone";
    for (const std::string& file : {path, std::string(real)}) {
        const std::string folder = file.substr(0, std::max<std::size_t>(file.rfind('/'), 1));
        if (::stat(folder.c_str(), &status) != 0 || status.st_mode & S_IWOTH)
            return "the library's folder must not be writable by everyone";
    }
    return {};
}

/// A value of an entry that must be there exactly once and be well-formed.
inline std::string registryValue(const std::string& header, std::string_view key, HRESULT notFound) {
    const std::string path = registryPath();
    const std::string text = readRegistry(path);
    const std::string entry = "registry " + path + ", entry [" + header + "]";
    const RegistrySection* found = nullptr;
    const auto sections = parseRegistry(text);
    for (const RegistrySection& section : sections) {
        if (!sameName(section.header, header))
            continue;
        if (found)
            throw ActivationError(notFound, entry + ": an entry must not be given twice");
        found = &section;
    }
    if (!found)
        throw ActivationError(notFound, entry + ": there is no such entry; the component is not registered");
    if (!found->fault.empty())
        throw ActivationError(notFound, entry + ", " + found->fault);
    const std::string_view value = found->value(key);
    if (value.empty())
        throw ActivationError(notFound, entry + ": " + std::string(key) + " must be given");
    return std::string(value);
}

/// The class identifier of a programmatic identifier.
inline CLSID classOf(std::string_view progId) {
    const std::string header = "progid " + std::string(progId);
    const std::string text = registryValue(header, "class", CO_E_CLASSSTRING);
    const auto clsid = parseGuid(text);
    if (!clsid)
        throw ActivationError(CO_E_CLASSSTRING, "registry " + registryPath() + ", entry [" + header +
                                                    "]: class must be a class identifier, not " + text);
    return *clsid;
}

/// A loaded in-process server. Its library stays in the process from the first load on, as do the windows and
/// the services behind it.
class Server {
public:
    /// `what` names the origin of the path in error texts.
    static Server load(const std::string& path, const std::string& what = "library") {
        if (const std::string fault = libraryFault(path); !fault.empty())
            throw ActivationError(CO_E_DLLNOTFOUND, what + ": server " + path + ": " + fault);
        void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library)
            throw ActivationError(CO_E_ERRORINDLL, what + ": server " + path + ": " + ::dlerror());
        Server server;
        server.symbol("DllGetClassObject", library, server.getClassObject);
        server.symbol("DllCanUnloadNow", library, server.canUnloadNow);
        server.symbol("DllRegisterServer", library, server.registerServer);
        server.symbol("DllUnregisterServer", library, server.unregisterServer);
        server.symbol("GetErrorInfo", library, server.getErrorInfo);
        server.symbol("CoRegisterClassObject", library, server.registerClassObject);
        server.symbol("CoRevokeClassObject", library, server.revokeClassObject);
        if (!server.getClassObject)
            throw ActivationError(
                CO_E_ERRORINDLL, what + ": server " + path + " must export DllGetClassObject");
        return server;
    }

    static Server forClass(const CLSID& clsid) {
        const std::string header = "class " + guidText(clsid);
        return load(registryValue(header, "server", REGDB_E_CLASSNOTREG),
            "registry " + registryPath() + ", entry [" + header + "]");
    }

    HRESULT create(const CLSID& clsid, const IID& iid, void** object) const {
        Ref<IClassFactory> factory;
        const HRESULT result = getClassObject(clsid, IID_IClassFactory, factory.out());
        return FAILED(result) ? result : factory->CreateInstance(nullptr, iid, object);
    }

    // Null where the library does not export the function.
    DllGetClassObjectFunction getClassObject = nullptr;
    DllCanUnloadNowFunction canUnloadNow = nullptr;
    DllRegisterServerFunction registerServer = nullptr;
    DllUnregisterServerFunction unregisterServer = nullptr;
    GetErrorInfoFunction getErrorInfo = nullptr;
    CoRegisterClassObjectFunction registerClassObject = nullptr;
    CoRevokeClassObjectFunction revokeClassObject = nullptr;

private:
    template<class Function>
    static void symbol(const char* name, void* library, Function& function) {
        function = reinterpret_cast<Function>(::dlsym(library, name));
    }
};

/// Creates an object of a registered class.
template<class Interface>
Ref<Interface> createObject(const CLSID& clsid, const IID& iid) {
    Ref<Interface> object;
    const HRESULT result = Server::forClass(clsid).create(clsid, iid, object.out());
    if (FAILED(result))
        throw ActivationError(
            result, "the server of class " + guidText(clsid) + " cannot create an object of it");
    return object;
}

template<class Interface>
Ref<Interface> createObject(std::string_view progId) {
    return createObject<Interface>(classOf(progId), iidOf<Interface>);
}

} // namespace k_genutil
