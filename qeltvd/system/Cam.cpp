#define LOG_TAG "qeltvd"

#include "Cam.h"

#include <errno.h>
#include <fcntl.h>
#include <log/log.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>

#include "Blocks.h"
#include "Code.h"
#include "Files.h"
#include "Stored.h"

namespace qeltvd {

using Callback = Notifier::Callback;

namespace {

constexpr char kName[] = "Qelnova Conditional Access";
constexpr char16_t kNameUtf16[] = u"Qelnova Conditional Access";
constexpr char kPowerKey[] = "ci.power";
constexpr char kCamPinKey[] = "ci.cam_pin";
constexpr char kHeldPinKey[] = "ci.held_pin";
constexpr char kLanguageKey[] = "ci.language";
constexpr char kAgeKey[] = "ci.parental_age";
constexpr char kHostIdKey[] = "ci.host_id";
constexpr char QELTV_PIN_FACTORY[] = "1234";
constexpr int kWrongPinLimit = 3;
constexpr uint16_t kCaSystems[] = {0x0b00, 0x0d96};
/** Ages of the parental menu, in its order. */
constexpr int32_t kAges[] = {0, 12, 16, 18};
/** Channel ids of the CAM's virtual channels: one-part numbers of the terrestrial list. */
constexpr uint32_t kVirtualChannelIds[Cam::kVirtualChannels] = {0x04000384, 0x04000385};

Cam::Units units(const std::u16string& text) {
    return std::vector<uint16_t>(text.begin(), text.end());
}

std::u16string wide(const std::string& ascii) {
    return std::u16string(ascii.begin(), ascii.end());
}

bool isPin(const std::string& text) {
    return text.size() >= 4 && text.size() <= Cam::kPinLimit &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/** Digits of a typed PIN; anything else becomes something that is no PIN. */
std::string narrow(const std::u16string& text) {
    std::string digits;
    for (const char16_t c : text) digits += c < 0x80 ? static_cast<char>(c) : '?';
    return digits;
}

}  // namespace

Cam::Cam(Store& store, Settings& settings, Notifier& notifier, const std::string& device)
        : mStore(store),
          mSettings(settings),
          mNotifier(notifier),
          mDevice(device),
          mHostId(settings.bytes(kHostIdKey)),
          mPowered(settings.number(kPowerKey, 1) != 0) {
    mStore.execute(
            "CREATE TABLE IF NOT EXISTS ci_keys (kind INTEGER PRIMARY KEY,"
            " active INTEGER NOT NULL, data BLOB NOT NULL)");
    if (mHostId.size() != QELTV_CI_HOST_ID_SIZE) {
        std::random_device random;
        mHostId.resize(QELTV_CI_HOST_ID_SIZE);
        for (uint8_t& byte : mHostId) byte = static_cast<uint8_t>(random());
        mSettings.set(kHostIdKey, mHostId);
    }
    if (mSettings.text(kCamPinKey).empty())
        mSettings.set(kCamPinKey, std::string(QELTV_PIN_FACTORY));
}

Result<int32_t> Cam::add(uint32_t first, uint32_t second, int pid) {
    std::lock_guard<std::mutex> guard(mLock);
    // Nothing else takes back the registrations of processes that are gone.
    const auto gone = [](const Registration& r) { return kill(r.pid, 0) != 0 && errno == ESRCH; };
    mRegistrations.erase(std::remove_if(mRegistrations.begin(), mRegistrations.end(), gone),
                         mRegistrations.end());
    if (mRegistrations.size() >= kRegistrationLimit) return kRefused;
    const int32_t registration = mNextRegistration++;
    mRegistrations.push_back({registration, first, second, pid});
    return registration;
}

Code Cam::remove(int32_t registration) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = std::find_if(mRegistrations.begin(), mRegistrations.end(),
                                    [&](const auto& r) { return r.handle == registration; });
    if (found == mRegistrations.end()) return kNotFound;
    mRegistrations.erase(found);
    return kOk;
}

std::optional<Cam::Bytes> Cam::get(int32_t type) const {
    std::lock_guard<std::mutex> guard(mLock);
    switch (type) {
        case QELTV_CI_GET_SLOT_STATE: {
            const uint32_t state = !mInserted ? QELTV_CI_EMPTY
                                   : mPowered ? QELTV_CI_READY
                                              : QELTV_CI_OFF;
            return bytesAs<Bytes>(&state, 1);
        }
        case QELTV_CI_GET_CAM_NAME:
            return ready() ? bytesAs<Bytes>(kName, strlen(kName)) : Bytes();
        case QELTV_CI_GET_CAM_NAME_UTF16:
            return ready() ? bytesAs<Bytes>(kNameUtf16, std::u16string(kNameUtf16).size())
                           : Bytes();
        case QELTV_CI_GET_DIALOGUE: {
            uint32_t kind = QELTV_CI_MENU_DIALOGUE;
            switch (mScreen) {
                case Screen::kNone:
                    kind = QELTV_CI_NO_DIALOGUE;
                    break;
                case Screen::kMain:
                case Screen::kParental:
                    break;
                case Screen::kSubscription:
                case Screen::kInformation:
                case Screen::kMessage:
                    kind = QELTV_CI_LIST_DIALOGUE;
                    break;
                default:
                    kind = QELTV_CI_ENQUIRY_DIALOGUE;
            }
            const uint32_t words[] = {kind, mDialogue};
            return bytesAs<Bytes>(words, 2);
        }
        case QELTV_CI_GET_CA_SYSTEMS:
            return ready() ? bytesAs<Bytes>(kCaSystems, std::size(kCaSystems)) : Bytes();
        case QELTV_CI_GET_SLOTS:
            return Bytes{1};
        case QELTV_CI_GET_LANGUAGE: {
            Bytes language = mSettings.bytes(kLanguageKey);
            return language.empty() ? bytesAs<Bytes>("eng", 4) : language;
        }
        case QELTV_CI_GET_POWER:
            return Bytes{static_cast<uint8_t>(mPowered)};
        default:
            return std::nullopt;
    }
}

std::u16string Cam::pin(bool* valid) const {
    std::lock_guard<std::mutex> guard(mLock);
    const std::string held = mSettings.text(kHeldPinKey);
    *valid = ready() && !held.empty() && held == mSettings.text(kCamPinKey);
    return wide(held);
}

Code Cam::set(int32_t type, uint32_t value, const uint8_t* data, size_t size) {
    std::lock_guard<std::mutex> guard(mLock);
    switch (type) {
        case QELTV_CI_SET_OPEN_MENU:
        case QELTV_CI_SET_CLOSE:
        case QELTV_CI_SET_RESET:
        case QELTV_CI_SET_REMOVE:
        case QELTV_CI_SET_INSERT:
            if (value != 0) return kNotFound;
            break;
        default:
            break;
    }
    switch (type) {
        case QELTV_CI_SET_OPEN_MENU:
            if (!ready()) return kRefused;
            show(Screen::kMain);
            return kOk;
        case QELTV_CI_SET_CLOSE:
            if (mScreen == Screen::kNone) return kRefused;
            closeDialogue();
            return kOk;
        case QELTV_CI_SET_MENU_ANSWER: {
            const auto words = recordOf<std::array<uint32_t, 2>>(data, size);
            return words ? answerMenu((*words)[0], (*words)[1]) : kBadValue;
        }
        case QELTV_CI_SET_RESET:
            if (!ready()) return kRefused;
            closeDialogue();
            mWrongPins = 0;
            notifySlot(QELTV_CI_CARD_READY);
            return kOk;
        case QELTV_CI_SET_REMOVE:
            if (!mInserted) return kRefused;
            closeDialogue();
            mInserted = false;
            notifySlot(QELTV_CI_CARD_REMOVED);
            return kOk;
        case QELTV_CI_SET_INSERT:
            if (mInserted) return kRefused;
            mInserted = true;
            mWrongPins = 0;
            notifySlot(QELTV_CI_CARD_INSERTED);
            if (ready()) notifySlot(QELTV_CI_CARD_READY);
            return kOk;
        case QELTV_CI_SET_PIN:
            return setPin(std::string(data, data + size));
        case QELTV_CI_SET_LANGUAGE: {
            if (size != 4) return kBadValue;
            const Bytes language(data, data + 4);
            return stored([&] {
                mSettings.set(kLanguageKey, language);
                return kOk;
            });
        }
        case QELTV_CI_SET_POWER: {
            if (size != 1 || data[0] > 1) return kBadValue;
            const bool on = data[0] == 1;
            if (on == mPowered) return kOk;
            const Code code = stored([&] {
                mSettings.set(kPowerKey, int64_t{on});
                return kOk;
            });
            if (code != kOk) return code;
            if (!on) closeDialogue();
            mPowered = on;
            if (ready()) notifySlot(QELTV_CI_CARD_READY);
            return kOk;
        }
        default:
            return kBadValue;
    }
}

Code Cam::setPin(const std::string& digits) {
    if (!digits.empty() && !isPin(digits)) return kBadValue;
    const Code code = stored([&] {
        mSettings.set(kHeldPinKey, digits);
        return kOk;
    });
    if (code != kOk || digits.empty() || !ready()) return code;
    notify(QELTV_CI_PIN_REPLY, {static_cast<uint8_t>(digits == mSettings.text(kCamPinKey))});
    return kOk;
}

void Cam::show(Screen screen) {
    switch (screen) {
        case Screen::kMain:
            showMenu(screen, QELTV_CI_MENU, kNameUtf16, u"Main menu",
                     {u"Subscription", u"Change PIN", u"Parental rating", u"Module information"});
            break;
        case Screen::kSubscription:
            showMenu(screen, QELTV_CI_LIST, u"Subscription", u"Valid until 31.12.2030",
                     {u"Basic package", u"Films", u"Sports"});
            break;
        case Screen::kInformation: {
            const int64_t age = mSettings.number(kAgeKey, 0);
            showMenu(screen, QELTV_CI_LIST, u"Module information", u"",
                     {u"Software 2.7.1", u"Serial number 00417-3302",
                      age == 0 ? u"No parental rating"
                               : u"Parental rating from " + wide(std::to_string(age))});
            break;
        }
        case Screen::kOldPin:
            showEnquiry(screen, u"Enter the PIN");
            break;
        case Screen::kNewPin:
            showEnquiry(screen, u"Enter the new PIN");
            break;
        case Screen::kNewPinAgain:
            showEnquiry(screen, u"Enter the new PIN again");
            break;
        case Screen::kParental: {
            std::vector<std::u16string> choices;
            for (const int32_t age : kAges) {
                choices.push_back(age == 0 ? u"Off" : u"From " + wide(std::to_string(age)));
            }
            showMenu(screen, QELTV_CI_MENU, u"Parental rating", u"Ask for the PIN", choices);
            break;
        }
        case Screen::kParentalPin:
            showEnquiry(screen, u"Enter the PIN");
            break;
        default:
            closeDialogue();
    }
}

void Cam::showMenu(Screen screen, int32_t cond, const std::u16string& title,
                   const std::u16string& subTitle, const std::vector<std::u16string>& choices) {
    mScreen = screen;
    ++mDialogue;
    Menu menu{};
    menu.title = units(title);
    menu.sub_title = units(subTitle);
    menu.bottom = units(cond == QELTV_CI_MENU ? u"Choose, 0 for back" : u"0 for back");
    std::vector<Units> texts;
    for (const auto& choice : choices) texts.push_back(units(choice));
    menu.choices = texts;
    notifyAll([menu, cond](Callback& callback, uint64_t first, uint64_t second) {
        return callback.a_hidl_qeltvapi_ci_nfy_fct_menu(first, second, cond, menu).isOk();
    });
}

void Cam::showEnquiry(Screen screen, const std::u16string& text) {
    mScreen = screen;
    ++mDialogue;
    Enquiry enquiry{};
    enquiry.b_blind = 1;
    enquiry.ans_len = 4;
    enquiry.text = units(text);
    notifyAll([enquiry](Callback& callback, uint64_t first, uint64_t second) {
        return callback.a_hidl_qeltvapi_ci_nfy_fct_enq(first, second, QELTV_CI_ENQUIRY, enquiry)
                .isOk();
    });
}

void Cam::showMessage(const std::u16string& text) {
    showMenu(Screen::kMessage, QELTV_CI_LIST, kNameUtf16, text, {});
}

void Cam::closeDialogue() {
    if (mScreen == Screen::kNone) return;
    mScreen = Screen::kNone;
    mNewPin.clear();
    notifySlot(QELTV_CI_CLOSED);
}

Code Cam::answerMenu(uint32_t dialogue, uint32_t choice) {
    if (mScreen == Screen::kNone || dialogue != mDialogue) return kRefused;
    switch (mScreen) {
        case Screen::kMain: {
            constexpr Screen kScreens[] = {Screen::kNone, Screen::kSubscription, Screen::kOldPin,
                                           Screen::kParental, Screen::kInformation};
            if (choice >= std::size(kScreens)) return kBadValue;
            show(kScreens[choice]);
            return kOk;
        }
        case Screen::kSubscription:
        case Screen::kInformation:
        case Screen::kMessage:
            if (choice != 0) return kBadValue;
            show(Screen::kMain);
            return kOk;
        case Screen::kParental:
            if (choice > std::size(kAges)) return kBadValue;
            if (choice == 0) {
                show(Screen::kMain);
            } else {
                mWantedAge = kAges[choice - 1];
                show(Screen::kParentalPin);
            }
            return kOk;
        default:
            // An enquiry wants a text.
            return kRefused;
    }
}

Code Cam::answerEnquiry(uint32_t kind, uint32_t dialogue, const std::u16string& text) {
    std::lock_guard<std::mutex> guard(mLock);
    if (dialogue != mDialogue) return kRefused;
    switch (mScreen) {
        case Screen::kOldPin:
        case Screen::kNewPin:
        case Screen::kNewPinAgain:
        case Screen::kParentalPin:
            break;
        default:
            return kRefused;
    }
    if (kind == QELTV_CI_CANCELLED) {
        mNewPin.clear();
        show(Screen::kMain);
        return kOk;
    }
    if (kind != QELTV_CI_ANSWERED) return kBadValue;
    return stored([&]() -> Code {
        if (mScreen == Screen::kOldPin || mScreen == Screen::kParentalPin) {
            if (mWrongPins >= kWrongPinLimit) {
                showMessage(u"Too many wrong PINs");
                return kOk;
            }
            if (narrow(text) != mSettings.text(kCamPinKey)) {
                ++mWrongPins;
                showMessage(u"Wrong PIN");
                return kOk;
            }
            mWrongPins = 0;
            if (mScreen == Screen::kOldPin) {
                show(Screen::kNewPin);
            } else {
                mSettings.set(kAgeKey, int64_t{mWantedAge});
                showMessage(u"Parental rating changed");
            }
        } else if (mScreen == Screen::kNewPin) {
            if (!isPin(narrow(text))) {
                showMessage(u"A PIN has 4 to 8 digits");
                return kOk;
            }
            mNewPin = text;
            show(Screen::kNewPinAgain);
        } else if (text != mNewPin) {
            mNewPin.clear();
            showMessage(u"The PINs differ");
        } else {
            mSettings.set(kCamPinKey, narrow(text));
            mNewPin.clear();
            showMessage(u"PIN changed");
        }
        return kOk;
    });
}

Result<uint32_t> Cam::virtualChannel(uint32_t index) const {
    std::lock_guard<std::mutex> guard(mLock);
    if (!ready() || index >= kVirtualChannels) return kNotFound;
    return kVirtualChannelIds[index];
}

Code Cam::writeKey(uint32_t kind, const Bytes& data) {
    if (kind >= QELTV_CI_KEY_KINDS || data.size() < QELTV_CI_KEY_MINIMUM ||
        data.size() > QELTV_CI_KEY_MAXIMUM) {
        return kBadValue;
    }
    std::lock_guard<std::mutex> guard(mLock);
    const Code code = stored([&] {
        Store::Statement(mStore, "INSERT OR REPLACE INTO ci_keys VALUES (?, 0, ?)")
                .bind(int64_t{kind})
                .bind(data)
                .run();
        return kOk;
    });
    if (code == kOk) notify(QELTV_CI_KEY_CHANGED, {QELTV_CI_KEY_WRITTEN});
    return code;
}

Code Cam::readKey(uint32_t kind, const std::string& path) {
    if (kind >= QELTV_CI_KEY_KINDS) return kBadValue;
    const Descriptor file = openFile(AT_FDCWD, path, O_RDONLY);
    if (!file) {
        if (errno == EINVAL) return kBadValue;
        return errno == ENOENT || errno == ENOTDIR ? kNotFound : kRefused;
    }
    // One byte more than there may be, so that a file that is too long shows.
    Bytes data(QELTV_CI_KEY_MAXIMUM + 1);
    const ssize_t size = read(file.get(), data.data(), data.size());
    if (size < 0) return kBadValue;
    data.resize(static_cast<size_t>(size));
    return writeKey(kind, data);
}

Code Cam::readDeviceKey(uint32_t kind) {
    return readKey(kind, mDevice + "/ci_key_" + std::to_string(kind) + ".bin");
}

Code Cam::activateKeys() {
    std::lock_guard<std::mutex> guard(mLock);
    const Code code = stored([&]() -> Code {
        Store::Statement(mStore, "UPDATE ci_keys SET active = 1 WHERE active = 0").run();
        return mStore.changes() > 0 ? kOk : kRefused;
    });
    if (code == kOk) notify(QELTV_CI_KEY_CHANGED, {QELTV_CI_KEY_ACTIVE});
    return code;
}

Code Cam::eraseKeys() {
    std::lock_guard<std::mutex> guard(mLock);
    const Code code = stored([&] {
        Store::Statement(mStore, "DELETE FROM ci_keys").run();
        return kOk;
    });
    if (code == kOk) notify(QELTV_CI_KEY_CHANGED, {QELTV_CI_KEY_NONE});
    return code;
}

Result<bool> Cam::keyExists(uint32_t kind) const {
    if (kind >= QELTV_CI_KEY_KINDS) return kBadValue;
    return stored([&]() -> Result<bool> {
        Store::Statement row(mStore, "SELECT 1 FROM ci_keys WHERE kind = ?");
        return row.bind(int64_t{kind}).step();
    });
}

/** The size of each kind and whether it is active; nothing of the data itself. */
Result<std::u16string> Cam::describeKeys() const {
    return stored([&]() -> Result<std::u16string> {
        std::string all;
        Store::Statement rows(mStore,
                              "SELECT kind, active, LENGTH(data) FROM ci_keys ORDER BY kind");
        while (rows.step()) {
            if (!all.empty()) all += "; ";
            all += std::to_string(rows.integer(0)) + ": " + std::to_string(rows.integer(2)) +
                   " bytes, " + (rows.integer(1) != 0 ? "active" : "written");
        }
        if (all.empty()) return kNotFound;
        return wide(all);
    });
}

void Cam::notifySlot(int32_t cond) {
    const uint32_t slot = 0;
    notify(cond, bytesAs<Bytes>(&slot, 1));
}

void Cam::notify(int32_t cond, const Bytes& data) {
    notifyAll([data, cond](Callback& callback, uint64_t first, uint64_t second) {
        return callback.a_hidl_qeltvapi_ci_nfy_fct(first, second, cond, data).isOk();
    });
}

template <class F>
void Cam::notifyAll(const F& call) {
    for (const Registration& r : mRegistrations) {
        mNotifier.post([call, first = r.first, second = r.second](
                               Callback& callback) { return call(callback, first, second); },
                       r.pid);
    }
}

}  // namespace qeltvd
