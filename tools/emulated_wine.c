// Lets Debian's 32-bit Wine run in qemu's user-mode emulator, for machines whose processor or kernel runs no 32-bit
// code. It is loaded into each emulated process before the C library (LD_PRELOAD, see ./dev) and makes good what
// qemu 7.2 leaves out and Wine relies on:
//  - mmap's MAP_FIXED_NOREPLACE, which the emulator takes for a mere hint: here the map of the process is asked first;
//  - the trap number in a signal's context, which the emulator has lost by then: here it is told from the signal;
//  - starting another Wine process, which the kernel would refuse: here the emulator is started with it.
// It is built without the system's headers, since the 32-bit ones are not installed.

typedef unsigned int word;

enum { MAP_FIXED = 0x10, MAP_FIXED_NOREPLACE = 0x100000, PAGE = 4096 };
enum { SYS_read = 3, SYS_open = 5, SYS_close = 6, SYS_execve = 11, SYS_mmap2 = 192 };
enum { EEXIST = 17, EINVAL = 22 };
enum { SIGILL = 4, SIGTRAP = 5, SIGBUS = 7, SIGFPE = 8, SIGSEGV = 11, SA_SIGINFO = 4, SI_KERNEL = 0x80, FPE_INTDIV = 1 };

extern char** environ;
extern int* __errno_location(void);

static int system_call(int number, int a, int b, int c, int d, int e, int f) {
    const int arguments[7] = {number, a, b, c, d, e, f};
    int result;
    // All registers are arguments, the base pointers of the frame and of position-independent code among them.
    __asm__ volatile(
        "push %%ebp\n\t"
        "push %%ebx\n\t"
        "mov %1, %%eax\n\t"
        "mov 4(%%eax), %%ebx\n\t"
        "mov 8(%%eax), %%ecx\n\t"
        "mov 12(%%eax), %%edx\n\t"
        "mov 16(%%eax), %%esi\n\t"
        "mov 20(%%eax), %%edi\n\t"
        "mov 24(%%eax), %%ebp\n\t"
        "mov (%%eax), %%eax\n\t"
        "int $0x80\n\t"
        "pop %%ebx\n\t"
        "pop %%ebp"
        : "=a"(result)
        : "r"(arguments)
        : "ecx", "edx", "esi", "edi", "memory");
    return result;
}

static void* failed_with(int error) {
    *__errno_location() = error;
    return (void*)-1;
}

// Whether no mapping of this process overlaps [start, end). Reads "aaaaaaaa-bbbbbbbb ..." line by line.
static int is_free(word start, word end) {
    char text[4096];
    word bound[2] = {0, 0};
    int side = 0;  // 0: first number, 1: second number, 2: rest of the line
    int is_overlapped = 0;
    const int file = system_call(SYS_open, (int)"/proc/self/maps", 0, 0, 0, 0, 0);
    if (file < 0) return 0;
    int count;
    while ((count = system_call(SYS_read, file, (int)text, sizeof text, 0, 0, 0)) > 0) {
        for (int i = 0; i < count; i++) {
            const char c = text[i];
            if (c == '\n') {
                side = 0;
                bound[0] = bound[1] = 0;
            } else if (side == 2) {
                continue;
            } else if (c >= '0' && c <= '9') {
                bound[side] = bound[side] * 16 + (word)(c - '0');
            } else if (c >= 'a' && c <= 'f') {
                bound[side] = bound[side] * 16 + (word)(c - 'a' + 10);
            } else {
                if (side == 1 && bound[0] < end && bound[1] > start) is_overlapped = 1;
                side++;
            }
        }
    }
    system_call(SYS_close, file, 0, 0, 0, 0, 0);
    return !is_overlapped;
}

void* mmap64(void* address, word length, int protection, int flags, int file, long long offset) {
    if (offset % PAGE != 0) return failed_with(EINVAL);
    if (flags & MAP_FIXED_NOREPLACE) {
        const word start = (word)address;
        const word end = start + ((length + PAGE - 1) & ~(word)(PAGE - 1));
        if ((end != 0 && end < start) || !is_free(start, end != 0 ? end : ~(word)0)) return failed_with(EEXIST);
        flags = (flags & ~MAP_FIXED_NOREPLACE) | MAP_FIXED;
    }
    const int result =
        system_call(SYS_mmap2, (int)address, (int)length, protection, flags, file, (int)(offset / PAGE));
    if ((word)result > -(word)PAGE) return failed_with(-result);
    return (void*)result;
}

void* mmap(void* address, word length, int protection, int flags, int file, int offset) {
    return mmap64(address, length, protection, flags, file, offset);
}

// The C library's own layout of 32-bit x86.
struct signal_action {
    void* handler;
    word mask[32];
    int flags;
    void* restorer;
};
typedef void signal_handler(int signal, int* information, word* context);

extern int __sigaction(int signal, const struct signal_action* action, struct signal_action* old);

static signal_handler* handlers[SIGSEGV + 1];

static word trap_of(int signal, int code) {
    switch (signal) {
        case SIGSEGV: return code == SI_KERNEL ? 13 : 14;  // protection fault, page fault
        case SIGBUS: return 17;                            // alignment
        case SIGTRAP: return code == SI_KERNEL ? 3 : 1;    // breakpoint, single step
        case SIGFPE: return code == FPE_INTDIV ? 0 : 16;   // division, floating point
        default: return 6;                                 // invalid instruction
    }
}

static void with_trap_number(int signal, int* information, word* context) {
    // The registers follow flags, link and the three words of the stack; the trap number is the thirteenth.
    word* trap = context + 5 + 12;
    if (*trap == ~(word)0) *trap = trap_of(signal, information[2]);
    handlers[signal](signal, information, context);
}

int sigaction(int signal, const struct signal_action* action, struct signal_action* old) {
    const int is_fault =
        signal == SIGSEGV || signal == SIGBUS || signal == SIGTRAP || signal == SIGFPE || signal == SIGILL;
    if (!action || !is_fault || !(action->flags & SA_SIGINFO)) return __sigaction(signal, action, old);
    struct signal_action ours = *action;
    handlers[signal] = (signal_handler*)action->handler;
    ours.handler = (void*)with_trap_number;
    return __sigaction(signal, &ours, old);
}

static int ends_with(const char* text, const char* end) {
    word length = 0, tail = 0;
    while (text[length]) length++;
    while (end[tail]) tail++;
    if (length < tail) return 0;
    for (word i = 0; i < tail; i++) {
        if (text[length - tail + i] != end[i]) return 0;
    }
    return 1;
}

int execv(const char* path, char* const* arguments) {
    static const char emulator[] = "/usr/bin/qemu-i386";
    const char* all[1024] = {emulator, path};
    if (ends_with(path, "/wine/wine")) {
        int count = 1;
        while (arguments[count] && count < 1022) {
            all[count + 1] = arguments[count];
            count++;
        }
        all[count + 1] = 0;
        path = emulator;
        arguments = (char* const*)all;
    }
    *__errno_location() = -system_call(SYS_execve, (int)path, (int)arguments, (int)environ, 0, 0, 0);
    return -1;
}
