#include "Descriptors.h"
#include "StreamText.h"
#include "Tables.h"

namespace qeltvd::stream {

namespace {

constexpr uint8_t kApplicationTableId = 0x74;
constexpr uint8_t kApplicationDescriptor = 0x00, kNameDescriptor = 0x01,
                  kTransportDescriptor = 0x02, kLocationDescriptor = 0x15;

/** The base address of a transport by HTTP. */
void readTransport(Bytes body, std::string* base) {
    constexpr uint16_t kHttp = 3;
    Reader reader(body);
    const uint16_t protocol = reader.u16();
    reader.u8();
    if (protocol != kHttp) return;
    *base = asciiText(reader.take(reader.u8()));
}

void readName(Bytes body, Application* application) {
    Reader reader(body);
    reader.skip(3);
    const Bytes name = reader.take(reader.u8());
    if (reader.ok() && application->name.empty()) application->name = dvbText(name);
}

void readApplication(Bytes body, Application* application) {
    Reader reader(body);
    reader.skip(reader.u8());
    reader.u8();
    application->priority = reader.u8();
}

}  // namespace

std::optional<ApplicationTable> applicationTable(Bytes section) {
    if (!isLongSection(section, PSI_HEADER_SIZE_SYNTAX1 + 4)) return std::nullopt;
    if (section.data[0] != kApplicationTableId) return std::nullopt;
    ApplicationTable table;
    readHeader(section, &table);
    const uint8_t* body = section.data + PSI_HEADER_SIZE_SYNTAX1;
    Reader reader({body, static_cast<size_t>(endOfBody(section) - body)});
    reader.skip(reader.u16() & 0x0fff);
    Reader applications(reader.take(reader.u16() & 0x0fff));
    if (!reader.ok()) return std::nullopt;
    while (applications.left() > 0) {
        Application application;
        application.type = table.extension & 0x7fff;
        application.organisation = applications.u32();
        application.id = applications.u16();
        application.control = applications.u8();
        const Bytes list = applications.take(applications.u16() & 0x0fff);
        if (!applications.ok()) return std::nullopt;
        std::string base, page;
        for (const Descriptor descriptor : Descriptors(list)) {
            switch (descriptor.tag()) {
                case kApplicationDescriptor:
                    readApplication(descriptor.body(), &application);
                    break;
                case kNameDescriptor:
                    readName(descriptor.body(), &application);
                    break;
                case kTransportDescriptor:
                    readTransport(descriptor.body(), &base);
                    break;
                case kLocationDescriptor:
                    page = asciiText(descriptor.body());
                    break;
                default:
                    break;
            }
        }
        if (!base.empty()) application.url = base + page;
        table.applications.push_back(std::move(application));
    }
    return table;
}

}  // namespace qeltvd::stream
