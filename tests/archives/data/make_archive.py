#!/usr/bin/env python3
"""Usage: make_archive.py KIND FILE. Writes one archive for the tests; see the functions below.

The functions that begin with "raw_" write, byte by
byte, what no tool would.
"""
import random
import struct
import sys
import zipfile
import zlib

DATE = (2024, 5, 17, 10, 20, 30)
DOS_DATE = (44 << 9) | (5 << 5) | 17


def entry(archive, name, data, date=DATE, method=zipfile.ZIP_DEFLATED):
    info = zipfile.ZipInfo(name, date)
    info.compress_type = method
    info.external_attr = 0o644 << 16
    archive.writestr(info, data)


def simple(archive):
    entry(archive, "top.txt", "top")
    entry(archive, "a/x.txt", "x")
    entry(archive, "a/b/y.txt", "y")
    entry(archive, "Über/ß.txt", "umlaut")
    entry(archive, "empty.txt", "")


def nested(archive):
    entry(archive, "a/b.txt", "b")


def folders(archive):
    entry(archive, "dir/", "")
    entry(archive, "dir/in.txt", "in")
    entry(archive, "other/", "")


def mixed_case(archive):
    entry(archive, "Data/a.txt", "1")
    entry(archive, "data/b.txt", "2")


def big(archive):
    entry(archive, "big.bin", bytes(i * 7 % 251 for i in range(200000)))


def chunks(archive):
    entry(archive, "chunks.bin", b"z" * 10000)


def texts(archive):
    entry(archive, "nul.txt", b"before\0after")
    entry(archive, "object.json", b'{"a": 1, "n": null}')
    entry(archive, "array.json", b"[1]")
    entry(archive, "stored.txt", b"stored", method=zipfile.ZIP_STORED)


def days(archive):
    entry(archive, "middle.txt", "m")
    entry(archive, "last.txt", "l", (2024, 5, 31, 10, 20, 30))


def leaving(archive):
    """Seven entries that would be written elsewhere, among two good ones."""
    entry(archive, "ok.txt", "ok")
    for name in ("/abs.txt", "../up.txt", "a/../../up2.txt", "C:/drive.txt", ":x", "a/../..", ".."):
        entry(archive, name, "evil")
    entry(archive, "sub/../kept.txt", "kept")


def link_planted(archive):
    """For a folder in which "link" and "plain.txt" are symbolic links already."""
    entry(archive, "link/inside.txt", "evil")
    entry(archive, "plain.txt", "plain")


def link_climbing(archive):
    entry(archive, "link/../above.txt", "above")
    entry(archive, "sub/../beside.txt", "beside")


def link_inside(archive):
    """A symbolic link that leads out of the folder, and an entry that goes through it."""
    link = zipfile.ZipInfo("link", DATE)
    link.create_system = 3
    link.external_attr = 0o120777 << 16
    archive.writestr(link, "../outside")
    entry(archive, "link/inside.txt", "evil")
    entry(archive, "ok.txt", "ok")


def long_names(archive):
    entry(archive, "n" * 1023, "1023")
    entry(archive, "m" * 1024, "1024")
    entry(archive, "k" * 3000, "3000")
    entry(archive, "after.txt", "after")


def long_paths(archive):
    """Two names that are one when they are cut."""
    folders = "".join(letter * 200 + "/" for letter in "abcdef")
    entry(archive, folders + "first.txt", "first")
    entry(archive, folders + "other.txt", "other")
    entry(archive, "after.txt", "after")


def sharp_s(archive):
    entry(archive, "Maße/a.txt", "1")
    entry(archive, "Masse/b.txt", "2")
    entry(archive, "MASSE/c.txt", "3")
    entry(archive, "MAẞE/d.txt", "4")


def own_name(archive):
    """Entries with the names of the archive itself and of a link to it."""
    entry(archive, "own_name.zip", "evil")
    entry(archive, "link.zip", "evil")
    entry(archive, "ok.txt", "ok")


def ten(archive):
    for i in range(10):
        entry(archive, "f%d.txt" % i, "content %d" % i)


def scattered(archive):
    """Entries of several sizes that don't shrink, so that their data are far from each other."""
    numbers = random.Random(1)
    for i in range(60):
        size = numbers.choice([0, 1, 4095, 16383, 16384, 16385, 60000])
        entry(archive, f"{i}.bin", f"{size}:".encode() + numbers.randbytes(size), method=i % 2 * 8)


def forced_zip64(archive):
    """ZIP64 in the local header, where a size wasn't known beforehand."""
    with archive.open(zipfile.ZipInfo("z.txt", DATE), "w", force_zip64=True) as file:
        file.write(b"hello zip64")


def other_methods(archive):
    entry(archive, "bzip2.txt", "bzip2 " * 100, method=zipfile.ZIP_BZIP2)
    entry(archive, "lzma.txt", "lzma " * 100, method=zipfile.ZIP_LZMA)
    entry(archive, "ok.txt", "ok")


def deflate(data, level=9):
    packer = zlib.compressobj(level, 8, -15)
    return packer.compress(data) + packer.flush()


def local(name, data, packed=None, size=None, crc=None):
    """A local header and its data: stored, or deflated as `packed`."""
    body = data if packed is None else packed
    return struct.pack("<IHHHHHIIIHH", 0x04034b50, 20, 0, 0 if packed is None else 8, 0, DOS_DATE,
                       zlib.crc32(data) if crc is None else crc, len(body), len(data) if size is None else size,
                       len(name), 0) + name + body


def central(name, offset, packed_size, size, crc, method=0, extra=b""):
    return struct.pack("<IHHHHHHIIIHHHHHII", 0x02014b50, 20, 20, 0, method, 0, DOS_DATE, crc,
                       packed_size, size, len(name), len(extra), 0, 0, 0, 0, offset) + name + extra


def end(count, size, offset):
    return struct.pack("<IHHHHIIH", 0x06054b50, 0, 0, count, count, size, offset, 0)


def end_zip64(count, size, offset):
    return struct.pack("<IQHHIIQQQQ", 0x06064b50, 44, 45, 45, 0, 0, count, count, size, offset) + \
        struct.pack("<IIQI", 0x07064b50, 0, offset + size, 1) + end(0xffff, 0xffffffff, 0xffffffff)


def stored(name, offset, data):
    return central(name, offset, len(data), len(data), zlib.crc32(data))


def raw_overlapping():
    """A small bomb: 300 entries over the same bytes, 4 MB each when written out."""
    data = b"\0" * (4 << 20)
    packed = deflate(data)
    body = local(b"f000", data, packed)
    directory = b"".join(central(b"f%03d" % i, 0, len(packed), len(data), zlib.crc32(data), 8)
                         for i in range(300))
    return body + directory + end(300, len(directory), len(body))


def raw_overlapping_zip64():
    """Two entries over the same bytes whose offsets stand in zip64 extra fields."""
    data = b"same bytes"
    body = local(b"a", data)
    extra = struct.pack("<HHQ", 1, 8, 0)
    directory = b"".join(central(name, 0xffffffff, len(data), len(data), zlib.crc32(data), 0, extra)
                         for name in (b"a", b"b"))
    return body + directory + end_zip64(2, len(directory), len(body))


def raw_overlapping_uncounted():
    """The bomb with an end record that counts no entries; minizip walks them all the same."""
    bomb = raw_overlapping()
    size, offset = struct.unpack("<II", bomb[-10:-2])
    return bomb[:-22] + end(0, size, offset)


def raw_overlapping_behind_many():
    """Behind 65,535 honest entries, where the plain record's count ends and minizip goes on."""
    body, directory, offset = [], [], 0
    for i in range(65535):
        name = b"h%05d" % i
        body.append(local(name, b""))
        directory.append(stored(name, offset, b""))
        offset += len(body[-1])
    body.append(local(b"same", b"same bytes"))
    directory += [stored(name, offset, b"same bytes") for name in (b"same", b"also")]
    directory = b"".join(directory)
    body = b"".join(body)
    return body + directory + end(65535, len(directory), len(body))


def raw_overlapping_two_directories():
    """A zip64 record for an honest directory, which minizip doesn't take for its number of disks."""
    data = b"same bytes"
    body = local(b"a", data)
    honest = stored(b"a", 0, data)
    record = struct.pack("<IQHHIIQQQQ", 0x06064b50, 44, 45, 45, 0, 0, 1, 1, len(honest), len(body))
    locator = struct.pack("<IIQI", 0x07064b50, 0, len(body) + len(honest), 2)
    # A locator lies anywhere in the tail; the plain directory comes behind it.
    before = body + honest + record + locator
    directory = stored(b"a", 0, data) + stored(b"b", 0, data)
    return before + directory + end(2, len(directory), len(before))


COPIES = 5  # of one mebibyte, in the small bombs that follow
ZEROS = b"\0" * (1 << 20)
PACKED = deflate(ZEROS)


def bomb_directory(offset=0):
    return b"".join(central(b"f%03d" % i, offset, len(PACKED), len(ZEROS), zlib.crc32(ZEROS), 8)
                    for i in range(COPIES))


def honest_directory(offset=0):
    return central(b"f000", offset, len(PACKED), len(ZEROS), zlib.crc32(ZEROS), 8)


def zip64_record(count, size, offset):
    return struct.pack("<IQHHIIQQQQ", 0x06064b50, 44, 45, 45, 0, 0, count, count, size, offset)


def zip64_locator(position):
    return struct.pack("<IIQI", 0x07064b50, 0, position, 1)


def raw_overlapping_far_locator():
    """An honest directory whose locator lies a little further from the end than minizip looks."""
    entry_data = local(b"f000", ZEROS, PACKED)
    honest = honest_directory()
    record = zip64_record(1, len(honest), len(entry_data))
    directory = bomb_directory()
    before = entry_data + honest + record + zip64_locator(len(entry_data) + len(honest))
    before += b"\0" * (0xffff + 10 - 20 - len(directory) - 22)
    return before + directory + end(COPIES, len(directory), len(before))


def raw_overlapping_record_at_start():
    """An honest, empty ZIP64 record at position 0, which minizip takes for "not found"."""
    record = zip64_record(0, 0, 0)
    body = record + local(b"f000", ZEROS, PACKED) + zip64_locator(0)
    directory = bomb_directory(len(record))
    return body + directory + end(COPIES, len(directory), len(body))


def raw_overlapping_locator_at_start():
    """The same with the locator of an honest directory."""
    entry_data = local(b"f000", ZEROS, PACKED)
    offset = len(zip64_locator(0))
    honest = honest_directory(offset)
    position = offset + len(entry_data) + len(honest)
    body = zip64_locator(position) + entry_data + honest
    body += zip64_record(1, len(honest), offset + len(entry_data))
    directory = bomb_directory(offset)
    return body + directory + end(COPIES, len(directory), len(body))


def raw_overlapping_negative_size():
    """The size of a ZIP64 directory below zero: it lies behind its record, the honest one is plain."""
    entry_data = local(b"f000", ZEROS, PACKED)
    position, behind = len(entry_data), 56
    body = entry_data + zip64_record(COPIES, 2**64 - behind, position + behind) + bomb_directory()
    body += zip64_locator(position)
    honest = honest_directory()
    return body + honest + end(1, len(honest), len(body))


def raw_overlapping_extra_fields():
    """Headers one behind the other, each with an extra field that reaches to the same data."""
    size = 34 + 4
    headers, directory = b"", b""
    for i in range(COPIES):
        name = b"f%03d" % i
        directory += central(name, len(headers), len(PACKED), len(ZEROS), zlib.crc32(ZEROS), 8)
        headers += struct.pack("<IHHHHHIIIHH", 0x04034b50, 20, 0, 8, 0, DOS_DATE, zlib.crc32(ZEROS),
                               len(PACKED), len(ZEROS), len(name), COPIES * size - len(headers) - 34)
        headers += name + b"\0" * 4
    body = headers + PACKED
    return body + directory + end(COPIES, len(directory), len(body))


def size_in_extra(name, offset, sizes):
    """An entry whose packed size stands in a ZIP64 field, and whose size too if it is given."""
    size = 0xffffffff if len(sizes) == 2 else len(ZEROS)
    extra = struct.pack("<HH%dQ" % len(sizes), 1, 8 * len(sizes), *sizes)
    header = struct.pack("<IHHHHHIIIHH", 0x04034b50, 45, 0, 8, 0, DOS_DATE, zlib.crc32(ZEROS),
                         0xffffffff, size, len(name), 0) + name
    return header, central(name, offset, 0xffffffff, size, zlib.crc32(ZEROS), 8, extra)


def raw_zip64_sizes():
    """As programs write it that always use ZIP64, and a plain entry behind it."""
    header, record = size_in_extra(b"z.txt", 0, (len(ZEROS), len(PACKED)))
    body = header + PACKED
    directory = record + stored(b"ok.txt", len(body), b"ok")
    body += local(b"ok.txt", b"ok")
    return body + directory + end(2, len(directory), len(body))


def raw_zip64_wrapping():
    """Sizes in ZIP64 fields that are nothing when an offset and a header's size are added."""
    header, _ = size_in_extra(b"f000", 0, (0,))
    body = header + PACKED + b"P" * 40000
    directory = b"".join(size_in_extra(b"f%03d" % i, 0, (2**64 - 30,))[1] for i in range(COPIES))
    return body + directory + end(COPIES, len(directory), len(body))


def raw_both_sizes_false():
    """Both sizes below 1 GiB, and both too large by far."""
    packed = deflate(b"small")
    packed_size, size = 0x7ffffffe, 0x3fffffff
    body = struct.pack("<IHHHHHIIIHH", 0x04034b50, 20, 0, 8, 0, DOS_DATE, 0, packed_size, size, 5, 0)
    body += b"t.txt" + packed + bytes(20000)  # minizip reads ahead
    directory = central(b"t.txt", 0, packed_size, size, 0, 8)
    return body + directory + end(1, len(directory), len(body))


def raw_nul_name():
    body = local(b"good\0.txt", b"nul")
    directory = stored(b"good\0.txt", 0, b"nul")
    return body + directory + end(1, len(directory), len(body))


def raw_wrong_crc():
    data = b"content"
    wrong = 0x12345678
    body = local(b"crc.txt", data, crc=wrong)
    directory = central(b"crc.txt", 0, len(data), len(data), wrong)
    return body + directory + end(1, len(directory), len(body))


def raw_incomplete_app():
    """An app with a wrong checksum, an entry that breaks off by itself, and a good one behind them."""
    names = [b"appinfo.json", b"wrong.txt", b"broken.txt", b"main.qml"]
    datas = [b"{}", b"content", b"text" * 10000, b"Item {}"]
    body = directory = b""
    for name, data in zip(names, datas):
        crc = 0x12345678 if name == b"wrong.txt" else zlib.crc32(data)
        packed = deflate(data)
        if name == b"broken.txt":
            packed = b"\x07" + packed[1:]  # a block of a type that doesn't exist
        directory += central(name, len(body), len(packed), len(data), crc, 8)
        body += local(name, data, packed, crc=crc)
    return body + directory + end(len(names), len(directory), len(body))


def raw_huge_claim():
    """Claims 4,294,967,280 bytes, which is -16 as an int."""
    data = b"small"
    packed = deflate(data)
    body = local(b"huge.txt", data, packed, 4294967280)
    directory = central(b"huge.txt", 0, len(packed), 4294967280, zlib.crc32(data), 8)
    return body + directory + end(1, len(directory), len(body))


def raw_damaged():
    """A deflated entry whose data go wrong in the middle, and a good one behind it."""
    data = bytes((i * i) % 256 ^ (i >> 7) % 256 for i in range(60000))
    packer = zlib.compressobj(9, 8, -15)
    # After half of the data, a block of a type that doesn't exist.
    packed = packer.compress(data[:30000]) + packer.flush(zlib.Z_FULL_FLUSH) + b"\x07" * 100
    first = local(b"bad.bin", data, packed)
    second = local(b"good.txt", b"good")
    directory = central(b"bad.bin", 0, len(packed), len(data), zlib.crc32(data), 8) + \
        stored(b"good.txt", len(first), b"good")
    return first + second + directory + end(2, len(directory), len(first) + len(second))


def raw_prefixed():
    """A good archive with something in front, as self-extracting programs have."""
    first = local(b"a.txt", b"data")
    body = first + local(b"b.txt", b"data")
    directory = stored(b"a.txt", 0, b"data") + stored(b"b.txt", len(first), b"data")
    return b"#!/bin/sh\n" * 50 + body + directory + end(2, len(directory), len(body))


def raw_truncated():
    """The end record promises a second entry that isn't there."""
    body = local(b"a.txt", b"data")
    directory = stored(b"a.txt", 0, b"data")
    return body + directory + end(2, len(directory), len(body))


def raw_many(count=70000):
    """70,000 entries in 100 folders, more than the plain end record can count."""
    body, directory, offset = [], [], 0
    for i in range(count):
        name = b"d%03d/f%06d.txt" % (i % 100, i)
        body.append(local(name, b"x"))
        directory.append(stored(name, offset, b"x"))
        offset += len(body[-1])
    directory = b"".join(directory)
    return b"".join(body) + directory + end_zip64(count, len(directory), offset)


def raw_twenty_thousand():
    return raw_many(20000)


def raw_hundred_thousand():
    return raw_many(100000)


def raw_cut():
    """The last third of the directory and the end record are missing."""
    body, directory = b"", b""
    for name in (b"a.txt", b"b.txt", b"c.txt"):
        directory += stored(name, len(body), b"data")
        body += local(name, b"data")
    return body + directory[:len(directory) * 2 // 3]


def raw_no_entries():
    return b"prefix, so that it can be opened" + end(0, 0, 0)


def main():
    kind, path = sys.argv[1:]
    raw = globals().get("raw_" + kind)
    if raw:
        with open(path, "wb") as file:
            file.write(raw())
        return
    with zipfile.ZipFile(path, "w") as archive:
        globals()[kind](archive)


main()
