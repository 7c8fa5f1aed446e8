// A plugin of qemu that counts the instructions a program executes, and says so when it ends:
//
//     qemu-ppc -plugin file=libinstruction_counter.so -d plugin PROGRAM
//     instructions: 2503815
#include <cstddef>
#include <cstdint>
#include <string>

// What is used here of qemu's interface for plugins, version 1; Debian has no header of it.
extern "C" {
struct qemu_plugin_tb;
typedef std::uint64_t qemu_plugin_id_t;
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };
void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t id,
                                           void (*translated)(qemu_plugin_id_t, qemu_plugin_tb*));
std::size_t qemu_plugin_tb_n_insns(qemu_plugin_tb const* block);
void qemu_plugin_register_vcpu_tb_exec_inline(qemu_plugin_tb* block, qemu_plugin_op op,
                                              void* counter, std::uint64_t addend);
void qemu_plugin_register_atexit_cb(qemu_plugin_id_t id, void (*ended)(qemu_plugin_id_t, void*),
                                    void* argument);
void qemu_plugin_outs(char const* text);

int qemu_plugin_version = 1;
int qemu_plugin_install(qemu_plugin_id_t id, void const* info, int argc, char** argv);
}

namespace {

std::uint64_t count = 0;

// A block's instructions are all executed, or a part of it is translated as a block of its own.
void CountBlock(qemu_plugin_id_t, qemu_plugin_tb* block) {
    qemu_plugin_register_vcpu_tb_exec_inline(block, QEMU_PLUGIN_INLINE_ADD_U64, &count,
                                             qemu_plugin_tb_n_insns(block));
}

void Report(qemu_plugin_id_t, void*) {
    qemu_plugin_outs(("instructions: " + std::to_string(count) + "\n").c_str());
}

}  // namespace

int qemu_plugin_install(qemu_plugin_id_t id, void const*, int, char**) {
    qemu_plugin_register_vcpu_tb_trans_cb(id, CountBlock);
    qemu_plugin_register_atexit_cb(id, Report, nullptr);
    return 0;
}
