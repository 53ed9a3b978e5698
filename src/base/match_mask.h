#pragma once

// True when `name` fits `mask`, byte by byte and with case. A null argument fits nothing; an empty name fits
// only an empty mask. In the mask
//   *  (or the control character 0x1A)  any run of characters up to the next '/', '\' or '.' or the end;
//                                       kept: a star stops at a dot, so "*" alone fits no name with an
//                                       extension
//   ?                                   one character except '/' and '\'
//   / or \                              either of the two
//   `                                   takes the next mask character literally
// Time is bounded by the product of both lengths, whatever the number of stars.
bool MatchMask(const char* mask, const char* name);
