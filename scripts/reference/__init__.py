"""Makes the reference manual of the plugin's classes from their records and from prose."""
