#include "platform/Settings.h"

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

constexpr const wchar_t* kRoot = L"Software\\VB and VBA Program Settings\\";

class RegistryKey {
  public:
    RegistryKey() = default;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() {
        if (key_ != nullptr) {
            ::RegCloseKey(key_);
        }
    }

    HKEY* Out() { return &key_; }
    [[nodiscard]] HKEY Get() const { return key_; }

  private:
    HKEY key_ = nullptr;
};

std::wstring PathOf(const std::string& application, const std::string& section) {
    return kRoot + Wide(application) + L"\\" + Wide(section);
}

void Check(LSTATUS result, const std::string& key) {
    if (result != ERROR_SUCCESS) {
        throw SystemError(static_cast<std::uint32_t>(result), key);
    }
}

class RegistrySettings : public SettingsStore {
  public:
    std::string GetSetting(const std::string& application, const std::string& section,
                           const std::string& key) override {
        const std::wstring path = PathOf(application, section);
        const std::wstring name = Wide(key);
        std::wstring value;
        LSTATUS result = ERROR_MORE_DATA;
        // The value may grow between asking for its length and reading it.
        while (result == ERROR_MORE_DATA) {
            DWORD bytes = 0;
            result = Read(path, name, nullptr, bytes);
            if (result == ERROR_FILE_NOT_FOUND || result == ERROR_PATH_NOT_FOUND) {
                return {};
            }
            Check(result, key);
            value.resize(bytes / sizeof(wchar_t) + 1);
            bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
            result = Read(path, name, value.data(), bytes);
        }
        Check(result, key);
        return Narrow(value.c_str());
    }

    void SaveSetting(const std::string& application, const std::string& section, const std::string& key,
                     const std::string& value) override {
        RegistryKey folder;
        Check(::RegCreateKeyExW(HKEY_CURRENT_USER, PathOf(application, section).c_str(), 0, nullptr,
                                REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, folder.Out(), nullptr),
              key);
        const std::wstring wide = Wide(value);
        Check(::RegSetValueExW(folder.Get(), Wide(key).c_str(), 0, REG_SZ,
                               reinterpret_cast<const BYTE*>(wide.c_str()),
                               static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t))),
              key);
    }

    /// The registry brings its changes to the medium by itself.
    void Sync() override {}

  private:
    static LSTATUS Read(const std::wstring& path, const std::wstring& name, void* out, DWORD& bytes) {
        return ::RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, out,
                              &bytes);
    }
};

}  // namespace

SettingsStore& UserSettings() {
    static RegistrySettings settings;
    return settings;
}

}  // namespace tavrel::platform
