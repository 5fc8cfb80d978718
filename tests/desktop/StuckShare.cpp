// SPDX-License-Identifier: GPL-3.0-or-later

// stuck-share MOUNTPOINT: mounts a file system that looks like an sshfs share whose server
// stopped answering. Listing its top folder works, but asking for its capacity (statfs) or
// opening its one file, note.txt, never returns. Runs until killed; whoever kills it unmounts
// the mount point (umount -l), since the kernel keeps the mount of a dead file system.

#define FUSE_USE_VERSION 31

#include <fuse.h>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void waitForever() {
    for (;;)
        ::pause();
}

int getAttributes(const char* path, struct stat* attributes, fuse_file_info*) {
    std::memset(attributes, 0, sizeof *attributes);
    if (std::strcmp(path, "/") == 0) {
        attributes->st_mode = S_IFDIR | 0755;
        attributes->st_nlink = 2;
        return 0;
    }
    if (std::strcmp(path, "/note.txt") == 0) {
        attributes->st_mode = S_IFREG | 0644;
        attributes->st_nlink = 1;
        attributes->st_size = 6;
        return 0;
    }
    return -ENOENT;
}

int openFile(const char*, fuse_file_info*) {
    waitForever();
}

int fileSystemStatistics(const char*, struct statvfs*) {
    waitForever();
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2)
        return 2;
    fuse_operations operations{};
    operations.getattr = getAttributes;
    operations.open = openFile;
    operations.statfs = fileSystemStatistics;
    // The type "fuse.sshfs" is what makes the system-stats panel list it as a network share.
    char* arguments[] = {argv[0], argv[1], const_cast<char*>("-f"), const_cast<char*>("-o"),
                         const_cast<char*>("fsname=nas:/stuck,subtype=sshfs")};
    return fuse_main(5, arguments, &operations, nullptr);
}
