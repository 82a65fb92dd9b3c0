#include <cstdio>
int main() { std::puts("busdecode: under construction"); return 2; }
