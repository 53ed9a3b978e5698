#pragma once

// The rules of a mask written down as they are told, with retreat and without a bound on time: what the real
// matcher is compared with on short texts.
inline bool RecursiveMask(const char* mask, const char* name) {
    const auto isSlash = [](char c) { return c == '/' || c == '\\'; };
    for (;; ++mask, ++name) {
        switch (*mask) {
            case '\0':
                return *name == '\0';
            case '*':
            case 0x1A: {
                int run = 0;
                while (name[run] != '\0' && name[run] != '.' && !isSlash(name[run])) ++run;
                for (; run >= 0; --run)
                    if (RecursiveMask(mask + 1, name + run)) return true;
                return false;
            }
            case '?':
                if (*name == '\0' || isSlash(*name)) return false;
                break;
            case '/':
            case '\\':
                if (!isSlash(*name)) return false;
                break;
            case '`':
                ++mask;
                if (*mask == '\0' || *mask != *name) return false;
                break;
            default:
                if (*mask != *name) return false;
        }
    }
}
