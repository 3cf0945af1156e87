/* Stands where one of the program's libraries should: a version of long ago, or no library of ours.
 */
#ifdef OLD
int GlyphrunInterfaceVersion(void) {
  return 0;
}
int CleftorInterfaceVersion(void) {
  return 0;
}
int MelderInterfaceVersion(void) {
  return 0;
}
#else
int AnswerToEverything(void) {
  return 42;
}
#endif
