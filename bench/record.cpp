// A record encoded and decoded again, against the usual formats.

#include "record.pb.h"

#include <cstdlib>
#include <msgpack.hpp>
#include <string>
#include <tuple>
#include <vector>

#include "comparison.h"
#include "record_contents.h"

namespace {

struct Contents {
    std::string blob;
    std::vector<std::uint32_t> ints;
};

void ExchangeOurs(const Contents& contents) {
    const auto* const blob = reinterpret_cast<const std::uint8_t*>(contents.blob.data());
    const auto length = static_cast<std::uint32_t>(contents.blob.size());
    std::uint32_t size, error;
    std::uint8_t* const record = hlx_encodeRecord(
        1, 1, length, blob, length, blob, 2, length, blob, 3,
        static_cast<std::int32_t>(contents.ints.size()), contents.ints.data(), &size, &error);
    const RecordContents read(record, size);
    benchmark::DoNotOptimize(&read);
    std::free(record);
}

void ExchangeMsgPack(const Contents& contents) {
    msgpack::sbuffer buffer;
    msgpack::pack(buffer, std::tie(contents.ints.front(), contents.ints.front(), contents.blob,
                                   contents.blob, contents.ints.front(), contents.blob,
                                   contents.ints.front(), contents.ints));
    std::tuple<std::uint32_t, std::uint32_t, std::string, std::string, std::uint32_t, std::string,
               std::uint32_t, std::vector<std::uint32_t>>
        read;
    msgpack::unpack(buffer.data(), buffer.size()).get().convert(read);
    benchmark::DoNotOptimize(&read);
}

void ExchangeProtobuf(const Contents& contents, peer::Record& written, peer::Record& read,
                      std::string& bytes) {
    written.set_type(1);
    written.set_value1(1);
    written.set_blob_a(contents.blob);
    written.set_blob_b(contents.blob);
    written.set_value2(2);
    written.set_blob_c(contents.blob);
    written.set_value3(3);
    written.mutable_ints()->Assign(contents.ints.begin(), contents.ints.end());
    written.SerializeToString(&bytes);
    read.ParseFromString(bytes);
    benchmark::DoNotOptimize(&read);
}

}  // namespace

void RegisterRecord() {
    for (const std::size_t size : {16u, 1024u}) {
        const Contents contents{std::string(size, 'x'), std::vector<std::uint32_t>(4, 0x12345678)};
        const std::string work =
            "record with blobs of " + std::to_string(size) + " bytes, encoded and decoded";
        Compare(work, "ours", 0, Repeat([contents] { ExchangeOurs(contents); }));
        Compare(work, "msgpack-c", size == 16 ? 0.28 : 0.5,
                Repeat([contents] { ExchangeMsgPack(contents); }));
        Compare(work, "protobuf", 0.77, Repeat([contents] {
                    peer::Record written, read;
                    std::string bytes;
                    ExchangeProtobuf(contents, written, read, bytes);
                }));
        Compare(work, "protobuf with reused messages", 0.95, [contents](benchmark::State& state) {
            peer::Record written, read;
            std::string bytes;
            for (auto _ : state) ExchangeProtobuf(contents, written, read, bytes);
        });
    }
}
