#include "Notifications.h"

#include "notification_kinds.h"
#include "notifications.h"

namespace screen {

using Json = nlohmann::ordered_json;

void listen(std::function<void(const Notification&)> receive) {
    tool::listen(tool::notificationKinds(),
                 [receive = std::move(receive)](const char* kind, const Json& values) {
                     Notification notification{kind, 0, "", Json::object()};
                     if (values[0].is_number_integer()) notification.type = values[0];
                     const tool::Described described = tool::describe(kind, values);
                     notification.event = described.eventShort;
                     for (const auto& value : described.values) {
                         // The tag of a registration without one.
                         if (value.name != "tag") notification.values[value.name] = value.text;
                     }
                     receive(notification);
                 });
}

}  // namespace screen
