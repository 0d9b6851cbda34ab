#pragma once

// The common logarithm in single precision, with the same bits on every host. C libraries round log10f
// differently; a report whose digits followed them would differ from host to host. This one gives for every
// power that a report can show what log10f of glibc 2.36 gives. `value` is 0 or a positive normal number;
// negative infinity for 0.
float Log10(float value);
